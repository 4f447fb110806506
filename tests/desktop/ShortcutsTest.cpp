// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString notifications = QStringLiteral("org.freedesktop.Notifications");

/** The codes of org.freedesktop.portal.Request.xml. */
enum Answer : uint {
    Accepts,
    Declines,
    Fails,
    Waits, ///< not a code: there is no answer
};

/**
 * A desktop with a portal for shortcuts, as org.freedesktop.portal.GlobalShortcuts.xml describes
 * it, and with notifications, while its thread handles Qt's events.
 */
class Desktop : public QDBusVirtualObject
{
public:
    explicit Desktop(const QString &address)
        : bus_(QDBusConnection::connectToBus(address, portalName))
    {
        bus_.registerVirtualObject(portalPath, this, QDBusConnection::SubPath);
        bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this);
        bus_.registerService(notifications);
    }
    ~Desktop() override { QDBusConnection::disconnectFromBus(portalName); }
    Q_DISABLE_COPY_MOVE(Desktop)

    bool offerPortal() { return bus_.registerService(portalName); }
    void leave()
    {
        bus_.unregisterService(portalName);
        session = {};
    }
    void press(const QString &id) { pressIn(session, id); }
    void pressIn(const QDBusObjectPath &pressedIn, const QString &id)
    {
        emitSignal(portalPath, QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                   QStringLiteral("Activated"),
                   {QVariant::fromValue(pressedIn), id, QVariant::fromValue<qulonglong>(1),
                    QVariantMap()});
    }
    void closeSession()
    {
        emitSignal(std::exchange(session, {}).path(),
                   QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Closed"),
                   {QVariantMap()});
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        const QVariantList arguments = message.arguments();
        if (message.member() == u"Get") {
            bus_.send(message.createReply(QVariant::fromValue(QDBusVariant(version))));
        } else if (message.member() == u"CreateSession") {
            const auto token = optionsIn(arguments)[QStringLiteral("session_handle_token")];
            session = pathOf(message, "session", token.toString());
            answer(message, creating, {{QStringLiteral("session_handle"), session.path()}});
        } else if (message.member() == u"BindShortcuts") {
            readShortcuts(arguments[1].value<QDBusArgument>());
            answer(message, binding, {});
        } else if (message.member() == u"Close") {
            closed.append(message.path());
        } else if (message.member() == u"Notify") {
            told.append(arguments[4].toString());
        }
        return true;
    }

    uint version = 1;
    uint creating = Accepts;
    uint binding = Accepts;
    QDBusObjectPath session; ///< the latest
    QStringList bound; ///< "id: description", of all sessions
    QStringList closed; ///< the paths of sessions and requests
    QStringList told; ///< the texts of notifications

private:
    static QVariantMap optionsIn(const QVariantList &arguments)
    {
        return qdbus_cast<QVariantMap>(arguments.back());
    }
    static QDBusObjectPath pathOf(const QDBusMessage &message, const char *kind,
                                  const QString &token)
    {
        const QString sender = message.service().sliced(1).replace(u'.', u'_');
        return QDBusObjectPath(
            portalPath + QStringLiteral("/%1/%2/%3").arg(QLatin1String(kind), sender, token));
    }
    void emitSignal(const QString &path, const QString &interface, const QString &name,
                    const QVariantList &arguments)
    {
        auto signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        bus_.send(signal);
    }
    void answer(const QDBusMessage &message, uint code, const QVariantMap &results)
    {
        const auto token = optionsIn(message.arguments())[QStringLiteral("handle_token")];
        const auto request = pathOf(message, "request", token.toString());
        bus_.send(message.createReply(QVariant::fromValue(request)));
        if (code != Waits) {
            emitSignal(request.path(), QStringLiteral("org.freedesktop.portal.Request"),
                       QStringLiteral("Response"), {code, results});
        }
    }
    void readShortcuts(const QDBusArgument &list)
    {
        list.beginArray();
        while (!list.atEnd()) {
            QString id;
            QVariantMap properties;
            list.beginStructure();
            list >> id >> properties;
            list.endStructure();
            bound.append(id + QStringLiteral(": ")
                         + properties[QStringLiteral("description")].toString());
        }
        list.endArray();
    }

    QDBusConnection bus_;
};

const QStringList offered{QStringLiteral("toggle-sharing: Start or stop sharing"),
                          QStringLiteral("toggle-pause: Pause sharing or go on"),
                          QStringLiteral("toggle-frame: Show or hide the frame around the area")};

struct ShortcutsFixture : SelectorFixture {
    QString startedBus()
    {
        startBus();
        return bus->address();
    }
    void command(const char *arguments, int exitCode = 0, const char *says = "") const
    {
        QByteArray said;
        QCOMPARE(launchAgain(QString::fromLatin1(arguments).split(u' '), &said), exitCode);
        QVERIFY2(said.contains(says) && said.isEmpty() == (*says == '\0'), said);
    }
    bool isStatus(const char *part) const
    {
        QByteArray said;
        launchAgain({QStringLiteral("--status")}, &said);
        return said.contains(part);
    }
    /** Whether the program asks for its shortcuts once more. */
    bool binds()
    {
        const bool result = waitFor([&] { return desktop.bound == offered; }, patience);
        desktop.bound.clear();
        return result;
    }
    bool isStoredOn() const
    {
        QFile file(settingsFile());
        return file.open(QFile::ReadOnly) && file.readAll().contains("shortcuts=@ByteArray(on)");
    }

    Desktop desktop{startedBus()};
};

} // namespace

/** Keys that the desktop gives the program. */
class ShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortcuts_doWhatTheCommandLineDoes_andAreRemembered()
    {
        ShortcutsFixture fixture;
        Desktop &desktop = fixture.desktop;
        QVERIFY(desktop.offerPortal());
        QVERIFY(fixture.launch());
        fixture.command("--shortcuts=on");
        QVERIFY(fixture.binds());
        for (const bool isFirst : {true, false}) {
            desktop.press(QStringLiteral("toggle-sharing"));
            QVERIFY(fixture.showsArea(area));
            desktop.pressIn(QDBusObjectPath(desktop.session.path() + u'x'),
                            QStringLiteral("toggle-sharing"));
            desktop.press(QStringLiteral("toggle-window"));
            desktop.press(QStringLiteral("toggle-pause"));
            QVERIFY(waitFor([&] { return fixture.isStatus(R"("paused":true)"); }, patience));
            desktop.press(QStringLiteral("toggle-pause"));
            QVERIFY(waitFor([&] { return fixture.isStatus(R"("paused":false)"); }, patience));
            const int windows = fixture.shownWindows();
            desktop.press(QStringLiteral("toggle-frame"));
            QVERIFY(
                waitFor([&] { return (fixture.shownWindows() > windows) == isFirst; }, patience));
            desktop.press(QStringLiteral("toggle-sharing"));
            QVERIFY(fixture.waitForNoOutput());
            QCOMPARE(desktop.told, QStringList());
            if (isFirst) {
                const QString session = desktop.session.path();
                fixture.end();
                QVERIFY(desktop.closed.contains(session));
                QVERIFY(fixture.launch());
                QVERIFY(fixture.binds());
            }
        }
        desktop.press(QStringLiteral("toggle-pause"));
        const QStringList nothing(QStringLiteral("Nothing is being shared."));
        QVERIFY(waitFor([&] { return desktop.told == nothing; }, patience));

        const QString session = desktop.session.path();
        fixture.command("--shortcuts=off");
        QVERIFY(waitFor([&] { return desktop.closed.contains(session); }, patience));
        QVERIFY(!fixture.isStoredOn());
        desktop.press(QStringLiteral("toggle-sharing"));
        fixture.end();
        QVERIFY(fixture.launch());
        QVERIFY(fixture.isStatus(R"("sharing":false)"));
        QCOMPARE(desktop.bound, QStringList());
    }

    void failures_areTold_andNotStored()
    {
        struct Row {
            bool hasPortal;
            uint version;
            uint creating;
            uint binding;
            const char *said; ///< by the option
            const char *told; ///< by a notification
        };
        const char *const own = "docs/shortcuts.md says how";
        for (const auto &[hasPortal, version, creating, binding, said, told] :
             {Row{false, 1, Accepts, Accepts, own, ""},
              {true, 0, Accepts, Accepts, own, ""},
              {true, 1, Declines, Accepts, "declined", ""},
              {true, 1, Fails, Accepts, own, ""},
              {true, 1, Accepts, Declines, "", "declined"},
              {true, 1, Accepts, Fails, "", own}}) {
            ShortcutsFixture fixture;
            Desktop &desktop = fixture.desktop;
            desktop.version = version;
            desktop.creating = creating;
            desktop.binding = binding;
            QVERIFY(!hasPortal || desktop.offerPortal());
            QVERIFY(fixture.launch());
            fixture.command("--shortcuts=on", *said == '\0' ? 0 : 1, said);
            const auto isTold = [&] {
                const QString text = desktop.told.join(u' ');
                return text.contains(QLatin1String(told)) && text.isEmpty() == (*told == '\0');
            };
            QVERIFY(waitFor(isTold, patience));
            QVERIFY(waitFor([&] { return fixture.isStoredOn() == (binding == Fails); }, patience));
            fixture.command("--shortcuts=off");
            QVERIFY(!fixture.isStoredOn());
        }
    }

    void shortcuts_comeBackWithThePortal_andAreAskedForOnlyOnce()
    {
        ShortcutsFixture fixture;
        Desktop &desktop = fixture.desktop;
        QVERIFY(desktop.offerPortal());
        QVERIFY(fixture.launch({areaOption, QStringLiteral("--shortcuts=on")}));
        QVERIFY(fixture.binds());
        fixture.command("--shortcuts=on"); // is known by now
        QVERIFY(desktop.bound.isEmpty());
        desktop.leave();
        QVERIFY(desktop.offerPortal());
        QVERIFY(fixture.binds());
        desktop.press(QStringLiteral("toggle-sharing"));
        QVERIFY(fixture.showsArea(area));
        desktop.closeSession(); // at the user's wish
        fixture.command("--stop");
        QCOMPARE(desktop.bound, QStringList());

        // Off while the desktop asks, on and on again.
        desktop.binding = Waits;
        desktop.closed.clear();
        fixture.command("--shortcuts=on");
        QVERIFY(fixture.binds());
        const QString session = desktop.session.path();
        fixture.command("--shortcuts=off");
        QVERIFY(waitFor([&] { return desktop.closed.contains(session); }, patience));
        QCOMPARE(desktop.closed.size(), 2); // and the request
        fixture.command("--shortcuts=on");
        QVERIFY(fixture.binds());
        fixture.command("--shortcuts=on");
        QVERIFY(fixture.binds());
        QVERIFY(fixture.isStoredOn());
        QCOMPARE(desktop.told, QStringList());
    }
};

QTEST_GUILESS_MAIN(ShortcutsTest)
#include "ShortcutsTest.moc"
