// SPDX-License-Identifier: MIT
#include "rig/ColorWindow.h"
#include "rig/WindowManager.h"
#include "tests/desktop/SelectorFixture.h"

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>
#include <functional>
#include <unistd.h>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr CaptureFrame frame{.x = 400, .y = 300, .width = 600, .height = 400};
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
class Notifications : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    explicit Notifications(const QString &address)
    {
        auto bus = QDBusConnection::connectToBus(address, name);
        bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                           QDBusConnection::ExportAllSlots);
        bus.registerService(name);
    }
    ~Notifications() override { QDBusConnection::disconnectFromBus(name); }
    Q_DISABLE_COPY_MOVE(Notifications)

    QStringList titles;

public Q_SLOTS:
    uint Notify(const QString &, uint, const QString &, const QString &title, const QString &,
                const QStringList &, const QVariantMap &, int)
    {
        titles.append(title);
        return 1;
    }

private:
    const QString name = QStringLiteral("org.freedesktop.Notifications");
};

/** Changes of the screen; each step is a list of xrandr options. */
struct ScreenChange {
    QStringList before{};
    QStringList change{};
    bool ends = false; ///< the session, for no display is left
    QStringList after{};
    QRect first = area; ///< shown before the change, root pixels
    QRect shown = area; ///< in the end
};

/** A disk that takes nothing any more. */
struct Disk {
    QStringList wrapper{}; ///< of the program
    bool hasOwnMounts = false;
    void (*fail)(const SharingFixture &);
    void (*recover)(const SharingFixture &);
};

/** Root may write whatever the permissions say, so the program gives that up. */
QStringList withoutPrivileges()
{
    return geteuid() == 0
        ? QStringLiteral("setpriv --bounding-set=-all --inh-caps=-all").split(u' ')
        : QStringList();
}

template<int permissions>
void setPermissions(const SharingFixture &fixture)
{
    QVERIFY(QFile::setPermissions(QFileInfo(fixture.settingsFile()).path(),
                                  QFile::Permissions(permissions)));
}

/** With a small disk of its own for the settings. */
QStringList onSmallDisk()
{
    const QStringList shell = QStringLiteral("unshare --map-root-user --mount sh -c").split(u' ');
    return shell
        + QStringList(QStringLiteral(
            R"(mount -t tmpfs -o size=64k tmpfs "$XDG_CONFIG_HOME" && exec "$0" "$@")"));
}

bool mayMount()
{
    auto trial = required(
        ChildProcess::start({.program = QStringLiteral("unshare"),
                             .arguments = {QStringLiteral("--map-root-user"),
                                           QStringLiteral("--mount"), QStringLiteral("true")}}));
    return trial.waitForEnd(patience) && trial.exitCode() == 0;
}

void fill(const SharingFixture &fixture)
{
    QFile file(fixture.settingsFile() + QStringLiteral(".filler"));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (file.write(QByteArray(512, ' ')) > 0) { }
    QCOMPARE(file.errorString(), qt_error_string(ENOSPC));
}

void makeRoom(const SharingFixture &fixture)
{
    QVERIFY(QFile::remove(fixture.settingsFile() + QStringLiteral(".filler")));
}

} // namespace

Q_DECLARE_METATYPE(ScreenChange)
Q_DECLARE_METATYPE(Disk)

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
            const auto manager = required(start(fixture.client, options));
            QVERIFY(fixture.stopSharing() && fixture.typeArea({400, 300, 500, 350}));
            QVERIFY(fixture.startAgain());
            QVERIFY(fixture.showsChange({400, 374, 500, 350}));
            QVERIFY(fixture.stopSharing());
            askToClose(fixture.client, *fixture.mainWindow());
            QCOMPARE(fixture.waitForExit(), 0);
        }
    }

    void session_endsOrGoesOn_whenTheScreenChanges_data()
    {
        QTest::addColumn<ScreenChange>("row");
        const QStringList addMode{
            QStringLiteral("--newmode small 40 1024 1025 1026 1100 768 769 770 800"),
            QStringLiteral("--addmode screen small")};
        const QStringList makeSmall{QStringLiteral("--output screen --mode small")};
        const QStringList makeLarge{QStringLiteral("--output screen --mode 1280x1024")};
        const QRect onSmall(400, 68, 600, 400);
        QTest::newRow("the display becomes smaller")
            << ScreenChange{.before = addMode, .change = makeSmall, .shown = onSmall};
        QTest::newRow("the display becomes larger")
            << ScreenChange{.before = addMode + makeSmall, .change = makeLarge, .first = onSmall};
        QTest::newRow("only the screen becomes larger")
            << ScreenChange{.before = addMode + makeSmall,
                            .change = {QStringLiteral("--fb 1280x1024")},
                            .first = onSmall,
                            .shown = onSmall};
        QTest::newRow("the only display goes and comes back")
            << ScreenChange{.change = {QStringLiteral("--output screen --off --fb 1280x1024")},
                            .ends = true,
                            .after = {QStringLiteral("--output screen --auto")}};
    }

    void session_endsOrGoesOn_whenTheScreenChanges()
    {
        QFETCH(ScreenChange, row);
        SharingFixture fixture(ProgramFixture::WindowManager::Openbox);
        fixture.startBus();
        Notifications notifications(fixture.bus->address());
        fixture.changeScreen(row.before);
        QVERIFY(fixture.launch(shareArea));
        const auto output = [&] { return fixture.outputWindow(); };
        // The capture, which looks after the screen, starts after the window is there.
        QVERIFY(fixture.showsChange(row.first));
        const auto first = output();
        fixture.changeScreen(row.change);
        if (!row.ends) {
            QVERIFY(fixture.showsChange(row.shown));
            QCOMPARE(output(), first);
            return;
        }
        QVERIFY(fixture.waitForNoOutput());
        QVERIFY(waitFor([&] { return fixture.shownWindows() == 2; }, patience));
        const QStringList told(QStringLiteral("Sharing Has Ended"));
        QVERIFY(waitFor([&] { return notifications.titles == told; }, patience));
        QVERIFY(fixture.answerAlert(keys::enter));
        fixture.changeScreen(row.after);
        QVERIFY(fixture.startAgain());
        QVERIFY(fixture.showsChange(row.shown));
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

    void savedArea_stays_whereTheDiskTakesNothing_data()
    {
        QTest::addColumn<Disk>("disk");
        QTest::newRow("read-only folder") << Disk{.wrapper = withoutPrivileges(),
                                                  .fail = setPermissions<0x5555>,
                                                  .recover = setPermissions<0x7755>};
        QTest::newRow("full disk") << Disk{
            .wrapper = onSmallDisk(), .hasOwnMounts = true, .fail = fill, .recover = makeRoom};
    }

    void savedArea_stays_whereTheDiskTakesNothing()
    {
        QFETCH(Disk, disk);
        if (disk.hasOwnMounts && !mayMount()) {
            QSKIP("Nothing may be mounted here");
        }
        SharingFixture fixture;
        fixture.wrapper = disk.wrapper;
        fixture.hasOwnMounts = disk.hasOwnMounts;
        QVERIFY(fixture.launch());
        QTRY_COMPARE(fixture.savedArea(), frame);
        disk.fail(fixture);
        QVERIFY(fixture.type(places::fields[0], "500"));
        QVERIFY(fixture.startAgain());
        QVERIFY(fixture.showsChange(area.translated(100, 0)));
        QCOMPARE(fixture.savedArea(), frame);
        QVERIFY(fixture.stopSharing());
        disk.recover(fixture);
        QVERIFY(fixture.typeArea({450, 300, 600, 400}));
    }
};

QTEST_GUILESS_MAIN(FaultTest)
#include "FaultTest.moc"
