// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QTest>
#include <QXmlStreamReader>

#include <limits>
#include <xcb/composite.h>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

const QString service = QStringLiteral("io.github.glimmerpane.Glimmerpane");
const QString path = QStringLiteral("/io/github/glimmerpane/Glimmerpane");
const QString interface = service + u'1';
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

QDBusMessage callOf(const QString &method, const QVariantList &arguments = {},
                    const QString &ofInterface = interface)
{
    auto message = QDBusMessage::createMethodCall(service, path, ofInterface, method);
    message.setArguments(arguments);
    return message;
}

/** The value as text; numbers and names in it follow each other. */
QString textOf(const QVariant &value)
{
    if (value.typeId() == qMetaTypeId<QDBusVariant>()) {
        return textOf(value.value<QDBusVariant>().variant());
    }
    if (value.typeId() != qMetaTypeId<QDBusArgument>()) {
        return value.toString();
    }
    const auto argument = value.value<QDBusArgument>();
    const auto type = argument.currentType();
    const bool isMap = type == QDBusArgument::MapType;
    const bool isArray = type == QDBusArgument::ArrayType;
    isMap ? argument.beginMap() : isArray ? argument.beginArray() : argument.beginStructure();
    QStringList texts;
    while (!argument.atEnd()) {
        if (isMap) {
            argument.beginMapEntry();
            texts.append(textOf(argument.asVariant()));
        }
        texts.append(textOf(argument.asVariant()));
        if (isMap) {
            argument.endMapEntry();
        }
    }
    isMap ? argument.endMap() : isArray ? argument.endArray() : argument.endStructure();
    return texts.join(u',');
}

/** Another program on the bus; it hears of changes. */
class Client : public QObject
{
    Q_OBJECT

public:
    Client(const QString &address, const QString &name)
        : bus(QDBusConnection::connectToBus(address, name))
        , name_(name)
    {
        bus.connect(service, path, properties, QStringLiteral("PropertiesChanged"), this,
                    SLOT(changed(QString, QVariantMap, QStringList)));
    }
    ~Client() override { QDBusConnection::disconnectFromBus(name_); }
    Q_DISABLE_COPY_MOVE(Client)

    /** Whether exactly this, sorted, is announced until what is awaited has come. */
    bool announces(const char *expected)
    {
        QCoreApplication::processEvents();
        const auto isSo = [&] {
            changes_.sort();
            return changes_.join(u' ') == QLatin1String(expected);
        };
        const bool result = waitFor(isSo, patience);
        if (!result) {
            qInfo() << "announced:" << changes_;
        }
        changes_.clear();
        return result;
    }
    /** What has been announced. */
    void forget()
    {
        QCoreApplication::processEvents();
        changes_.clear();
    }
    /** Of all properties. */
    QVariantMap values() const
    {
        const auto reply
            = bus.call(callOf(QStringLiteral("GetAll"), {interface}, properties)).arguments();
        return qdbus_cast<QVariantMap>(reply.value(0));
    }
    QDBusMessage set(const QString &property, const QVariant &value) const
    {
        return bus.call(callOf(QStringLiteral("Set"),
                               {interface, property, QVariant::fromValue(QDBusVariant(value))},
                               properties));
    }

    QDBusConnection bus;

private Q_SLOTS:
    void changed(const QString &ofInterface, const QVariantMap &values, const QStringList & /**/)
    {
        QCOMPARE(ofInterface, interface);
        for (const auto &[name, value] : values.asKeyValueRange()) {
            changes_.append(name + u'=' + textOf(value));
        }
    }

private:
    const QString name_;
    QStringList changes_;
};

struct InterfaceFixture : SelectorFixture {
    InterfaceFixture()
    {
        startBus();
        require(launch({areaOption}), "no main window");
        caller.emplace(bus->address(), QStringLiteral("client"));
        const auto isReady = [&] {
            return textOf(caller->values()[QStringLiteral("Area")]) == u"400,300,600,400";
        };
        require(waitFor(isReady, patience), "the options are not obeyed");
        caller->forget();
    }

    std::optional<Client> caller;
};

/** What a call leads to. */
struct Row {
    const char *method;
    QVariantList arguments;
    const char *announced = ""; ///< before the answer
    const char *error = ""; ///< the end of its name, and a part of its text
    const char *text = "";
};

} // namespace

/** The program as other programs use it, over the session bus. */
class SessionInterfaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everything_isAsDescribed()
    {
        InterfaceFixture fixture;
        const auto reply = fixture.caller->bus.call(
            callOf(QStringLiteral("Introspect"), {},
                   QStringLiteral("org.freedesktop.DBus.Introspectable")));
        QXmlStreamReader reader(reply.arguments().value(0).toString());
        QStringList interfaces;
        int methods = 0;
        QVariantMap values = fixture.caller->values();
        while (!reader.atEnd()) {
            const bool isStart = reader.readNext() == QXmlStreamReader::StartElement;
            const QString name = reader.attributes().value(QStringLiteral("name")).toString();
            if (isStart && reader.name() == u"interface") {
                interfaces.append(name);
            }
            if (!isStart || interfaces.value(interfaces.size() - 1) != interface) {
                continue;
            }
            if (reader.name() == u"method") {
                ++methods;
                const auto answer = fixture.caller->bus.call(callOf(name, {QByteArray()}));
                QCOMPARE(answer.errorName(),
                         QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
            } else if (reader.name() == u"property") {
                const auto answer = fixture.caller->bus.call(
                    callOf(QStringLiteral("Get"), {interface, name}, properties));
                QCOMPARE(answer.signature(), QStringLiteral("v"));
                const QVariant value = answer.arguments().value(0).value<QDBusVariant>().variant();
                QCOMPARE(textOf(value), textOf(values.take(name)));
                QVERIFY2(!textOf(value).isEmpty() || name == u"SharedArea", qPrintable(name));
            }
        }
        QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
        QCOMPARE(interfaces.removeDuplicates(), 0);
        QCOMPARE(methods, 17);
        QVERIFY(values.isEmpty());
    }

    void methods_doWhatTheCommandLineDoes_andChangesAreAnnounced()
    {
        InterfaceFixture fixture;
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const QString left = QStringLiteral("Left");
        for (const auto &[method, arguments, announced, error, text] : {
                 Row{"Pause", {}, "", "Failed", "Nothing is being shared."},
                 {"SetArea", {400., 300., 600., 400.}},
                 {"SetArea", {10., 20., 300., 200.}, "Area=10,20,300,200"},
                 {"SetArea", {nan, 20., 300., 200.}, "", "InvalidArgs", "not finite"},
                 {"SetArea", {10, 20, 300, 200}, "", "InvalidArgs", "'dddd'"},
                 {"SaveAs", {left}},
                 {"Start", {}, "SharedArea=10,20,300,200 Sharing=true Watched=no"},
                 {"Start", {}},
                 {"Select", {}, "", "Failed", "cannot be selected"},
                 {"Move", {50., 60., false}, "SharedArea=50,60,300,200"},
                 {"Move", {5000., 60., false}, "", "Failed", "not on any display"},
                 {"Move", {infinity, 60., false}, "", "InvalidArgs", "not finite"},
                 {"MoveAndResize", {5., 6., 70., 80., true}, "Area=5,6,70,80 SharedArea=5,6,70,80"},
                 {"SetSize", {QStringLiteral("400x300")}, "Area=0,0,400,300"},
                 {"SetSize", {QStringLiteral("4000x300")}, "", "Failed", "1280 x 1024"},
                 {"SetSize", {QStringLiteral("4 x3")}, "", "InvalidArgs", "'4 x3' is not a size"},
                 {"Use", {left}, "Area=10,20,300,200"},
                 {"Use", {QStringLiteral("Right")}, "", "Failed", "named 'Right'"},
                 {"Pause", {}, "Paused=true"},
                 {"Blank", {}},
                 {"TogglePause", {}, "Paused=false"},
                 {"TogglePause", {}, "Paused=true"},
                 {"Resume", {}, "Paused=false"},
                 {"Resume", {}},
                 {"Forget", {left}},
                 {"Forget", {left}, "", "Failed", "named 'Left'"},
                 {"Stop", {}, "SharedArea= Sharing=false Watched=unknown"},
                 {"Stop", {}},
                 {"Select", {}},
                 {"Start", {}, "", "Failed", "is being selected"},
                 {"Show", {}},
                 {"Hide", {}, "", "UnknownMethod", "'Hide'"},
             }) {
            const auto reply = fixture.caller->bus.call(callOf(QLatin1String(method), arguments));
            QVERIFY(fixture.caller->announces(announced));
            const QString failure = reply.errorName() + u' ' + reply.errorMessage();
            QVERIFY2(failure.contains(QLatin1String(error)) && failure.contains(QLatin1String(text))
                         && (failure == u" ") == (*error == '\0'),
                     qPrintable(QLatin1String(method) + u' ' + failure));
        }
        QVERIFY(fixture.becomes(onScreen({10, 20, 300, 200})));
        fixture.cancel();
        const auto areas = [&] {
            const auto reply = fixture.caller->bus.call(callOf(QStringLiteral("ListAreas")));
            return textOf(reply.arguments().value(0));
        };
        QVERIFY(areas().isEmpty());
        fixture.caller->bus.call(callOf(QStringLiteral("SaveAs"), {left}));
        QCOMPARE(areas(), QStringLiteral("Left,10,20,300,200"));
    }

    void otherChanges_areAnnounced_andTheFrameCanBeSet()
    {
        InterfaceFixture fixture;
        auto &client = *fixture.caller;
        QVERIFY(fixture.startAgain());
        QVERIFY(client.announces("SharedArea=400,300,600,400 Sharing=true Watched=no"));
        QVERIFY(fixture.showsArea(area));
        const auto redirect = [&](auto *request) {
            request(fixture.client.connection(), *fixture.outputWindow(),
                    XCB_COMPOSITE_REDIRECT_AUTOMATIC);
            fixture.client.sync();
        };
        redirect(xcb_composite_redirect_window);
        QVERIFY(client.announces("Watched=yes"));
        redirect(xcb_composite_unredirect_window);
        QVERIFY(client.announces("Watched=no"));
        QVERIFY(client.values()[QStringLiteral("FramesPerSecond")].toInt() >= 0);
        QVERIFY(fixture.stopSharing());
        QVERIFY(client.announces("SharedArea= Sharing=false Watched=unknown"));

        const QString frame = QStringLiteral("Frame");
        QCOMPARE(client.set(frame, true).errorMessage(), QString());
        QVERIFY(client.announces("Frame=true"));
        QCOMPARE(client.set(frame, true).errorMessage(), QString());
        QVERIFY(client.announces(""));
        for (const auto &[property, value, error] :
             {std::tuple("Frame", QVariant(1), "InvalidArgs"),
              {"Sharing", QVariant(true), "PropertyReadOnly"},
              {"Window", QVariant(true), "UnknownProperty"}}) {
            const auto reply = client.set(QLatin1String(property), value);
            QCOMPARE(reply.errorName(),
                     QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(error));
        }
        fixture.end();
        QVERIFY(fixture.launch({QStringLiteral("--share")}));
        const auto isSo = [&] {
            const auto values = client.values();
            return values[frame].toBool()
                && textOf(values[QStringLiteral("SharedArea")]) == u"400,300,600,400";
        };
        QVERIFY(waitFor(isSo, patience));
        client.forget();
        QCOMPARE(fixture.launchAgain({QStringLiteral("--frame=off")}), 0);
        QVERIFY(client.announces("Frame=false"));
    }

    void everyCall_isAnswered_howeverManyThereAre()
    {
        InterfaceFixture fixture;
        auto &client = *fixture.caller;
        std::optional<Client> other;
        other.emplace(fixture.bus->address(), QStringLiteral("other"));
        std::vector<QDBusPendingCall> calls;
        for (int i = 0; i < 100; ++i) {
            for (const auto &[method, arguments] :
                 {std::pair("Start", QVariantList()),
                  {"Move", {10. + i, 20., i % 2 == 0}},
                  {"TogglePause", {}},
                  {"MoveAndResize", {0., 0., 100. + i, 100., false}},
                  {"Blank", {}},
                  {"Resume", {}},
                  {"SetArea", {1. + i, 2., 300., 200.}},
                  {"SaveAs", {QStringLiteral("a")}},
                  {i % 3 == 0 ? "Stop" : "Move", i % 3 == 0 ? QVariantList() : QVariantList{0}}}) {
                const auto message = callOf(QLatin1String(method), arguments);
                calls.push_back(client.bus.asyncCall(message));
                if (arguments.isEmpty()) {
                    other->bus.asyncCall(message);
                }
            }
        }
        other.reset(); // leaves while some of its calls are unanswered
        const auto allFinished
            = [&] { return std::ranges::all_of(calls, &QDBusPendingCall::isFinished); };
        QVERIFY(waitFor(allFinished, 6 * patience));
        const QString ownError = interface + QStringLiteral(".Error.Failed");
        const QString misused = QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");
        for (const QDBusPendingCall &call : calls) {
            const QString error = call.reply().errorName();
            QVERIFY2(error.isEmpty() || error == ownError || error == misused, qPrintable(error));
        }
        QCOMPARE(client.bus.call(callOf(QStringLiteral("Stop"))).errorMessage(), QString());
        QVERIFY(!fixture.outputWindow());
        client.bus.call(callOf(QStringLiteral("SetArea"), {7., 2., 300., 200.}));
        QCOMPARE(fixture.savedArea(), (CaptureFrame{7, 2, 300, 200}));
    }

    void quit_isAnswered_andEndsEvenAnAlert()
    {
        InterfaceFixture fixture;
        fixture.caller->bus.call(callOf(QStringLiteral("SetArea"), {0., 0., 0., 0.}));
        const auto refused = fixture.caller->bus.call(callOf(QStringLiteral("Start")));
        QVERIFY(refused.errorMessage().contains(QStringLiteral("empty")));
        QVERIFY(waitFor([&] { return fixture.alert().has_value(); }, patience));
        const auto reply = fixture.caller->bus.call(callOf(QStringLiteral("Quit")));
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(fixture.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(SessionInterfaceTest)
#include "SessionInterfaceTest.moc"
