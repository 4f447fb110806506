// SPDX-License-Identifier: MIT
#include "rig/ColorWindow.h"
#include "rig/WindowManager.h"
#include "tests/desktop/SelectorFixture.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include <functional>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

const QStringList shareArea{areaOption, QStringLiteral("--share")};
constexpr QRgb colors[] = {0xffff0000, 0xff00ff00, 0xff0000ff, 0xffffff00, 0xff00ffff};

/** The program while it shares the area, with something in it that changes. */
struct SharingFixture : SelectorFixture {
    using SelectorFixture::SelectorFixture;

    const ColorWindow window
        = required(ColorWindow::show(client, {.rectangle = area.adjusted(20, 20, -50, -50)}));
    int changes = 0;

    bool showsChange(QRect place)
    {
        window.setColor(colors[changes++ % std::size(colors)]);
        return showsArea(place);
    }
    void changeScreen(const QStringList &commands) const
    {
        for (const QString &command : commands) {
            server.run(QStringLiteral("xrandr"), command.split(u' '));
        }
    }
};

/** A desktop's notification service, while its thread handles Qt's events. */
class Notifications : public QDBusVirtualObject
{
public:
    explicit Notifications(const QString &address)
    {
        auto bus = QDBusConnection::connectToBus(address, name);
        bus.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this);
        bus.registerService(name);
    }
    ~Notifications() override { QDBusConnection::disconnectFromBus(name); }
    Q_DISABLE_COPY_MOVE(Notifications)

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        titles.append(message.member() + u' ' + message.arguments().value(3).toString());
        return true;
    }

    QStringList titles;

private:
    const QString name = QStringLiteral("org.freedesktop.Notifications");
};

/** Changes of the screen; each step is a list of xrandr options. */
struct ScreenChange {
    const char *name;
    QStringList before{};
    QStringList change{};
    bool ends = false; ///< the session, for no display is left under the area
    QStringList after{};
    QRect first = area; ///< shown before the change, root pixels
    QRect shown = area; ///< in the end
};

} // namespace

class FaultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void program_worksOn_whenAManagerComesAndGoes()
    {
        // A window manager and a compositor, with the selection that each owns while it runs.
        for (const auto &[program, selection, start] :
             {std::tuple("openbox", "WM_S0", &startWindowManager),
              {"picom", "_NET_WM_CM_S0", &startCompositor}}) {
            SharingFixture fixture;
            const ChildProcess::Options options{.program = QLatin1String(program),
                                                .environment = fixture.server.environment()};
            // The pointer of a killed manager stays, but only clients that have read it before can
            // see it.
            fixture.input.moveTo(besidesEverything);
            QVERIFY(fixture.launch(shareArea));
            QVERIFY(fixture.showsChange(area));
            for (const bool isKilled : {true, false}) {
                auto manager = required(start(fixture.client, options));
                const auto output = fixture.outputWindow();
                QVERIFY(output && fixture.showsChange(area));
                isKilled ? manager.kill() : manager.terminate();
                const auto hasGone
                    = [&, name = selection] { return !isOwned(fixture.client, name); };
                QVERIFY(waitFor(hasGone, patience));
                QVERIFY(fixture.showsChange(area));
                QCOMPARE(fixture.outputWindow(), output);
                QVERIFY(fixture.stopSharing() && fixture.startAgain());
                QVERIFY(fixture.showsChange(area));
            }
        }
    }

    void session_endsOrGoesOn_whenTheScreenChanges()
    {
        const QStringList addMode{
            QStringLiteral("--newmode small 40 1024 1025 1026 1100 768 769 770 800"),
            QStringLiteral("--addmode screen small")};
        const QStringList makeSmall{QStringLiteral("--output screen --mode small")};
        const QStringList twoMonitors{
            QStringLiteral("--setmonitor LEFT 640/160x1024/270+0+0 screen"),
            QStringLiteral("--setmonitor RIGHT 640/160x1024/270+640+0 none")};
        const QRect onSmall(400, 68, 600, 400);
        const ScreenChange rows[]{
            {.name = "the display becomes smaller",
             .before = addMode,
             .change = makeSmall,
             .shown = onSmall},
            {.name = "the display becomes larger",
             .before = addMode + makeSmall,
             .change = {QStringLiteral("--output screen --mode 1280x1024")},
             .first = onSmall},
            {.name = "only the screen becomes larger",
             .before = addMode + makeSmall,
             .change = {QStringLiteral("--fb 1280x1024")},
             .first = onSmall,
             .shown = onSmall},
            {.name = "another display becomes the primary one",
             .before = twoMonitors,
             .change = {QStringLiteral("--delmonitor RIGHT"),
                        QStringLiteral("--setmonitor *RIGHT 640/160x900/200+640+0 none")},
             .shown = {1040, 200, 600, 400}},
            {.name = "the area's display goes",
             .before = twoMonitors,
             .change = {QStringLiteral("--delmonitor RIGHT"), QStringLiteral("--delmonitor LEFT"),
                        QStringLiteral("--setmonitor LEFT 390/100x1024/270+0+0 screen")},
             .ends = true,
             .after = {QStringLiteral("--delmonitor LEFT")}},
            {.name = "the only display goes and comes back",
             .change = {QStringLiteral("--output screen --off --fb 1280x1024")},
             .ends = true,
             .after = {QStringLiteral("--output screen --auto")}}};
        for (const ScreenChange &row : rows) {
            qInfo("%s", row.name);
            SharingFixture fixture(ProgramFixture::WindowManager::Openbox);
            fixture.startBus();
            Notifications notifications(fixture.bus->address());
            fixture.changeScreen(row.before);
            QVERIFY(fixture.launch(shareArea));
            // The capture, which looks after the screen, starts after the window is there.
            QVERIFY(fixture.showsChange(row.first));
            const auto first = fixture.outputWindow();
            fixture.changeScreen(row.change);
            if (!row.ends) {
                QVERIFY(fixture.showsChange(row.shown));
                QCOMPARE(fixture.outputWindow(), first);
                continue;
            }
            QVERIFY(fixture.waitForNoOutput());
            QVERIFY(waitFor([&] { return fixture.shownWindows() == 2; }, patience));
            const QStringList told(QStringLiteral("Notify Sharing Has Ended"));
            QVERIFY(waitFor([&] { return notifications.titles == told; }, patience));
            QVERIFY(fixture.answerAlert(keys::enter));
            fixture.changeScreen(row.after);
            QVERIFY(fixture.startAgain());
            QVERIFY(fixture.showsChange(row.shown));
        }
    }

    void session_canBeStartedAgain_whenTheOutputWasTakenAway()
    {
        const auto by = [](auto *request) {
            return [request](const XClient &client, xcb_window_t window) {
                request(client.connection(), window);
            };
        };
        using Way = std::function<void(const XClient &, xcb_window_t)>;
        for (const Way &takeAway : {Way(by(xcb_destroy_window)), Way(by(xcb_kill_client)),
                                    Way(by(xcb_unmap_window)), Way(askToClose)}) {
            SharingFixture fixture;
            QVERIFY(fixture.launch(shareArea));
            QVERIFY(fixture.showsChange(area));
            takeAway(fixture.client, *fixture.outputWindow());
            QVERIFY(fixture.waitForNoOutput());
            QVERIFY(fixture.startAgain());
            QVERIFY(fixture.showsChange(area));
            QVERIFY(fixture.stopSharing());
        }
    }
};

QTEST_GUILESS_MAIN(FaultTest)
#include "FaultTest.moc"
