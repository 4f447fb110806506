// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QTest>
#include <QtEndian>

#include <memory>
#include <xcb/composite.h>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

const char *const unwatched = "the area is shared, but nobody is watching yet";
const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemName = QStringLiteral("org.kde.StatusNotifierItem");

/** What icons register with, as panels have it. Its panel can come later. */
class TrayWatcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost)

public:
    explicit TrayWatcher(const QString &address)
        : bus(QDBusConnection::connectToBus(address, QStringLiteral("panel")))
    {
        require(bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                   QDBusConnection::ExportAllContents)
                    && bus.registerService(watcherName),
                "cannot be the desktop's tray");
    }
    ~TrayWatcher() override { QDBusConnection::disconnectFromBus(bus.name()); }
    Q_DISABLE_COPY_MOVE(TrayWatcher)

    void addHost()
    {
        hasHost = true;
        Q_EMIT StatusNotifierHostRegistered();
    }

    QDBusConnection bus;
    bool hasHost = false;
    QStringList items; ///< all that have ever registered

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service) { items.append(service); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
};

struct MenuEntry {
    int id = 0;
    QVariantMap properties;
    std::vector<MenuEntry> children;

    explicit MenuEntry(const QDBusArgument &argument)
    {
        if (argument.currentType() != QDBusArgument::StructureType) {
            return; // the program has gone
        }
        QVariantList parts;
        argument.beginStructure();
        argument >> id >> properties >> parts;
        argument.endStructure();
        for (const QVariant &part : parts) {
            const auto child = part.value<QDBusVariant>().variant();
            children.emplace_back((child.isValid() ? child : part).value<QDBusArgument>());
        }
    }
    bool is(const char *property) const
    {
        return properties.value(QLatin1String(property), true).toBool();
    }
    QString label() const { return properties.value(QStringLiteral("label")).toString(); }

    /** What is to be seen: in parentheses if it is disabled, with a star if it is checked. */
    QString text() const
    {
        QStringList texts;
        for (const MenuEntry &child : children) {
            if (child.is("visible") && !child.label().isEmpty()) {
                texts.append(child.text());
            }
        }
        QString text = label();
        if (properties.value(QStringLiteral("toggle-state")).toInt() == 1) {
            text.append(u'*');
        }
        if (!texts.isEmpty()) {
            text.append(QStringLiteral("[%1]").arg(texts.join(QStringLiteral(", "))));
        }
        return is("enabled") ? text : u'(' + text + u')';
    }
    const MenuEntry *find(const QString &wanted) const
    {
        for (const MenuEntry &child : children) {
            if (child.label() == wanted) {
                return &child;
            }
            if (const auto *found = child.find(wanted)) {
                return found;
            }
        }
        return nullptr;
    }
};

/** The program on a desktop with a panel, which looks at the program's icon and its menu. */
struct TrayFixture : SelectorFixture {
    TrayFixture()
    {
        startBus();
        watch();
    }
    void watch()
    {
        watcher.reset();
        watcher = std::make_unique<TrayWatcher>(bus->address());
    }

    void startWithTray()
    {
        watcher->addHost();
        start({areaOption, QStringLiteral("--tray=on")});
        moveMainWindow({20, 300});
        require(waitFor([&] { return !watcher->items.isEmpty(); }, patience), "no icon comes");
    }
    QVariantList call(const char *path, const QString &interface, const char *method,
                      const QVariantList &arguments) const
    {
        auto message
            = QDBusMessage::createMethodCall(watcher->items.value(watcher->items.size() - 1),
                                             QLatin1String(path), interface, QLatin1String(method));
        message.setArguments(arguments);
        const QDBusPendingCall answer = watcher->bus.asyncCall(message);
        waitFor([&] { return answer.isFinished(); }, patience);
        return answer.reply().arguments();
    }
    /** What the icon says, and what its menu contains. */
    bool becomes(const char *saying, const QByteArray &part) const
    {
        const auto isSo = [&] {
            return toolTip() == QStringLiteral("Glimmerpane: ") + QLatin1String(saying)
                && menu().text().contains(QLatin1String(part));
        };
        const bool result = waitFor(isSo, patience);
        if (!result) {
            qInfo() << toolTip() << menu().text();
        }
        return result;
    }
    using SelectorFixture::becomes;
    QVariant property(const char *name) const
    {
        return call("/StatusNotifierItem", QStringLiteral("org.freedesktop.DBus.Properties"), "Get",
                    {itemName, QLatin1String(name)})
            .value(0)
            .value<QDBusVariant>()
            .variant();
    }
    QVariantList callMenu(const char *method, const QVariantList &arguments) const
    {
        return call("/MenuBar", QStringLiteral("com.canonical.dbusmenu"), method, arguments);
    }
    MenuEntry menu() const
    {
        const auto answer = callMenu("GetLayout", {0, -1, QStringList()});
        return MenuEntry(answer.value(1).value<QDBusArgument>());
    }
    void choose(const char *label) const
    {
        const MenuEntry all = menu();
        const auto *const entry = all.find(QString::fromLatin1(label));
        QVERIFY2(entry, qPrintable(all.text()));
        callMenu("Event",
                 {entry->id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    }
    QString toolTip() const
    {
        QString icon;
        QString title;
        const auto argument = property("ToolTip").value<QDBusArgument>();
        if (argument.currentType() != QDBusArgument::StructureType) {
            return {};
        }
        argument.beginStructure();
        argument >> icon;
        argument.beginArray();
        while (!argument.atEnd()) {
            argument.asVariant();
        }
        argument.endArray();
        argument >> title;
        argument.endStructure();
        return title;
    }
    /** By their widths. */
    QMap<int, QImage> pictures() const
    {
        QMap<int, QImage> pictures;
        const auto argument = property("IconPixmap").value<QDBusArgument>();
        argument.beginArray();
        while (!argument.atEnd()) {
            int width = 0;
            int height = 0;
            QByteArray pixels; // ARGB, in network byte order
            argument.beginStructure();
            argument >> width >> height >> pixels;
            argument.endStructure();
            QImage picture(width, height, QImage::Format_ARGB32);
            for (int i = 0; i < width * height; ++i) {
                picture.setPixel(i % width, i / width,
                                 qFromBigEndian<QRgb>(pixels.constData() + 4 * i));
            }
            pictures.insert(width, picture);
        }
        argument.endArray();
        return pictures;
    }
    bool isAbove(xcb_window_t window, xcb_window_t other) const
    {
        const auto windows = listWindows(client, Listing::All);
        return std::ranges::find(windows, other) < std::ranges::find(windows, window);
    }
    QByteArray status() const
    {
        QByteArray said;
        launchAgain({QStringLiteral("--status")}, &said);
        return said;
    }

    std::unique_ptr<TrayWatcher> watcher;
};

} // namespace

/** The icon in the desktop's tray. */
class TrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void icon_tellsTheState_andItsEntriesAct()
    {
        TrayFixture fixture;
        fixture.startWithTray();
        const char *const rest = ", Size of the area[1280x720, 1920x1080, 16:9, 4:3], "
                                 "(Named areas), Show window, Quit]";
        QMap<QString, QImage> pictures;
        for (const auto &[entry, toolTip, menu, status] :
             {std::tuple("", "nothing is shared",
                         "Start sharing, (Pause), (Pause and hide the picture), "
                         "Frame around the area, Select area",
                         R"("sharing":false)"),
              {"Start sharing", unwatched,
               "Stop sharing, Pause, Pause and hide the picture, Frame around the area, "
               "(Select area)",
               R"("paused":false)"},
              {"Pause", "sharing is paused",
               "Stop sharing, Resume, Pause and hide the picture, Frame around the area, "
               "(Select area)",
               R"("paused":true)"},
              {"Frame around the area", "sharing is paused",
               "Stop sharing, Resume, Pause and hide the picture, Frame around the area*, "
               "(Select area)",
               R"("paused":true)"},
              {"Resume", unwatched,
               "Stop sharing, Pause, Pause and hide the picture, Frame around the area*, "
               "(Select area)",
               R"("paused":false)"},
              {"Pause and hide the picture", "sharing is paused",
               "Stop sharing, Resume, Pause and hide the picture, Frame around the area*, "
               "(Select area)",
               R"("paused":true)"},
              {"Stop sharing", "nothing is shared",
               "Start sharing, (Pause), (Pause and hide the picture), Frame around the area*, "
               "Select area",
               R"("sharing":false)"},
              {"Select area", "nothing is shared",
               "(Start sharing), (Pause), (Pause and hide the picture), Frame around the area*, "
               "(Select area)",
               R"("sharing":false)"}}) {
            if (*entry != '\0') {
                fixture.choose(entry);
            }
            QVERIFY(fixture.becomes(toolTip, QByteArray(menu) + rest));
            QVERIFY2(fixture.status().contains(status), entry);
            pictures.insert(fixture.toolTip(), fixture.pictures().value(22));
        }
        QVERIFY(fixture.becomes(area));
        fixture.cancel();
        QVERIFY(fixture.becomes(std::nullopt));

        QVERIFY(fixture.becomes("nothing is shared", "Start sharing"));
        QVERIFY(fixture.status().contains("false")); // it has done what belonged to the selector
        xcb_grab_server(
            fixture.client.get()); // so the program cannot find out whether it may share
        fixture.client.sync();
        fixture.choose("Start sharing");
        QVERIFY(fixture.becomes("sharing is starting", "Stop sharing, Pause"));
        pictures.insert(fixture.toolTip(), fixture.pictures().value(22));
        xcb_ungrab_server(fixture.client.get());
        fixture.client.sync();
        QVERIFY(fixture.becomes(unwatched, "Stop sharing, Pause"));
        xcb_composite_redirect_window(fixture.client.get(), *fixture.outputWindow(),
                                      XCB_COMPOSITE_REDIRECT_AUTOMATIC); // as a call does
        fixture.client.sync();
        QVERIFY(fixture.becomes("the area is shared", "Stop sharing, Pause"));
        pictures.insert(fixture.toolTip(), fixture.pictures().value(22));
        QCOMPARE(pictures.size(), 5);
        for (const QImage &picture : pictures) {
            QCOMPARE(picture.size(), QSize(22, 22));
            QCOMPARE(pictures.values().count(picture), 1);
        }
    }

    void areasAndWindows_areReached()
    {
        TrayFixture fixture;
        fixture.startWithTray();
        QVERIFY(fixture.becomes("nothing is shared", "Start sharing"));
        fixture.choose("16:9");
        QVERIFY(waitFor([&] { return fixture.savedArea() == CaptureFrame{400, 331, 600, 338}; },
                        patience));
        QCOMPARE(fixture.launchAgain(
                     {QStringLiteral("--save-as=R&D_x"), QStringLiteral("--area=0,0,99x99")}),
                 0);
        QCOMPARE(fixture.launchAgain({QStringLiteral("--area=0,0,50x50")}), 0);
        fixture.callMenu("AboutToShow", {0});
        QVERIFY(fixture.becomes("nothing is shared", "Named areas[R_&D__x], "));
        fixture.choose("R_&D__x");
        QVERIFY(
            waitFor([&] { return fixture.savedArea() == CaptureFrame{0, 0, 99, 99}; }, patience));

        const auto cover
            = required(ColorWindow::show(fixture.client, {.rectangle = {{}, screenSize}}));
        const uint32_t above = XCB_STACK_MODE_ABOVE;
        for (const bool isClick : {true, false}) {
            xcb_configure_window(fixture.client.get(), cover.id(), XCB_CONFIG_WINDOW_STACK_MODE,
                                 &above);
            fixture.client.sync();
            if (isClick) {
                fixture.call("/StatusNotifierItem", itemName, "Activate", {0, 0});
            } else {
                fixture.choose("Show window");
            }
            QVERIFY(waitFor([&] { return fixture.isAbove(*fixture.mainWindow(), cover.id()); },
                            patience));
        }
        fixture.choose("1920x1080"); // larger than the display
        QVERIFY(waitFor(
            [&] {
                return fixture.alert() && fixture.isAbove(*fixture.alert(), *fixture.mainWindow());
            },
            patience));
        fixture.choose("Quit");
        fixture.choose("4:3"); // goes on in the alert's event loop
        QVERIFY(fixture.status().contains(R"("height":74.0)"));
        QVERIFY(fixture.answerAlert(keys::enter));
    }

    void icon_isRemembered_andComesWithTheDesktopsTray()
    {
        TrayFixture fixture;
        fixture.watcher.reset();
        fixture.start({areaOption, QStringLiteral("--tray=on")});
        QVERIFY(fixture.waitForMainWindow());
        QVERIFY(fixture.status().contains("false"));
        fixture.watch();
        QVERIFY(fixture.status().contains("false"));
        QVERIFY(fixture.watcher->items.isEmpty()); // there is no panel yet
        fixture.watcher->addHost();
        QVERIFY(fixture.becomes("nothing is shared", "Start sharing"));
        fixture.watcher.reset();
        fixture.watch();
        QVERIFY(fixture.becomes("nothing is shared", "Start sharing")); // again
        fixture.end();

        fixture.watch();
        fixture.watcher->addHost();
        fixture.start();
        QVERIFY(fixture.becomes("nothing is shared", "Start sharing"));
        QCOMPARE(fixture.launchAgain({QStringLiteral("--tray=off")}), 0);
        QVERIFY(waitFor([&] { return fixture.toolTip().isEmpty(); }, patience));
        fixture.end();

        fixture.start();
        QVERIFY(fixture.waitForMainWindow());
        QCOMPARE(fixture.launchAgain({QStringLiteral("--tray=on")}), 0);
        QVERIFY(fixture.becomes("nothing is shared", "Start sharing"));
        QCOMPARE(fixture.watcher->items.size(), 2); // none of them from before
    }

    void window_endsTheProgram_asWithoutAnIcon()
    {
        for (const bool byMenu : {true, false}) {
            TrayFixture fixture;
            fixture.startWithTray();
            const auto leave = [&] {
                if (byMenu) {
                    fixture.choose("Quit");
                } else {
                    askToClose(fixture.client, *fixture.mainWindow());
                }
            };
            fixture.choose("Start sharing");
            QVERIFY(fixture.becomes(unwatched, "Stop sharing, Pause"));
            leave();
            QVERIFY(waitFor([&] { return fixture.alert().has_value(); }, patience));
            QVERIFY(fixture.answerAlert(keys::escape));
            QVERIFY(fixture.becomes(unwatched, "Stop sharing, Pause"));
            fixture.choose("Stop sharing");
            QVERIFY(fixture.becomes("nothing is shared", "Start sharing"));
            leave();
            QCOMPARE(fixture.waitForExit(), 0);
        }
    }
};

QTEST_GUILESS_MAIN(TrayTest)
#include "TrayTest.moc"
