// SPDX-License-Identifier: MIT
#include "rig/ColorWindow.h"
#include "tests/desktop/SelectorFixture.h"

#include <QTest>

#include <csignal>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

struct InstanceFixture : SelectorFixture {
    InstanceFixture() { startBus(); }

    /** Launches the program with these options, and looks at its end and at what it says. */
    void command(const char *arguments, int exitCode, const char *says = "") const
    {
        QByteArray said;
        const QStringList options = QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts);
        QCOMPARE(launchAgain(options, &said), exitCode);
        QVERIFY2(said.contains(says) && said.count('\n') == (*says == '\0' ? 0 : 1), said);
    }
};

} // namespace

/** What a second launch does to the running program. */
class InstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void command_actsOnTheRunningProgram()
    {
        InstanceFixture fixture;
        const char *const absent = "glimmerpane: Glimmerpane is not running.\n";
        fixture.command("--status", 1, absent);
        fixture.command("--area 1,2,3x4 --stop", 1, absent);
        QVERIFY(fixture.launch());
        fixture.command("--status", 0,
                        R"({"area":{"x":400.0,"y":300.0,"width":600.0,"height":400.0},)"
                        R"("sharing":false,"sharedArea":null,"paused":false,"watched":null,)"
                        R"("framesPerSecond":0,"drops":0,)"
                        R"("backend":"x11","clicks":"shown"})");

        fixture.command("--share", 0);
        QVERIFY(fixture.showsArea(area));
        const auto window = required(ColorWindow::show(fixture.client, {.rectangle = area}));
        QVERIFY(fixture.showsArea(area));
        QByteArray said;
        QCOMPARE(fixture.launchAgain({QStringLiteral("--status")}, &said), 0);
        QVERIFY2(said.contains("true") && !said.contains("Second\":0,"), said);
        fixture.command("--share --output-window=unlisted", 0);
        fixture.command("--output-window=managed", 1, "other kind of output");
        fixture.command("--select", 1, "cannot be selected");
        fixture.command("--area=10,20,300x200 --stop --status", 0, R"("width":300.0)");
        QVERIFY(!fixture.outputWindow());
        QCOMPARE(fixture.savedArea(), (CaptureFrame{10, 20, 300, 200}));

        fixture.command("--area=400,300,600x400 --select", 0);
        QVERIFY(fixture.becomes(area));
        fixture.command("--select", 0);
        fixture.command("--share", 1, "is being selected");
        fixture.confirm();
        QVERIFY(fixture.becomes(std::nullopt));
        fixture.command("--area=1,2,3", 2, "'1,2,3' is not an area");

        fixture.command("--area=0,0,0x0 --share", 1, "glimmerpane: The area is empty.");
        fixture.command("--share", 1, "is showing a message");

        // Launching it again shows the alert, though no window manager keeps it on top.
        const auto main = fixture.mainWindow();
        constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(fixture.client.connection(), *main, XCB_CONFIG_WINDOW_STACK_MODE,
                             &above);
        fixture.client.sync();
        fixture.command("", 0);
        const auto isAlertOnTop = [&] {
            const auto windows = listWindows(fixture.client, Listing::All);
            const auto alert = fixture.alert();
            return alert && std::ranges::find(windows, *main) < std::ranges::find(windows, *alert);
        };
        QVERIFY(waitFor(isAlertOnTop, patience));
    }

    void areasWithNames_areKeptWithAndWithoutTheProgram()
    {
        InstanceFixture fixture;
        fixture.command("--save-as=Left", 1, "No area is stored yet");
        fixture.command("--areas --json", 0, "[]\n");
        QVERIFY(fixture.launch({areaOption}));
        fixture.command("--save-as=Left --areas", 0, "400,300,600x400 Left\n");
        fixture.command("--size=16:9 --status", 0, R"("y":331.0,"width":600.0,"height":338.0)");
        fixture.command("--size=1281x1024", 1, "1280 x 1024 pixels");
        fixture.command("--area=0,0,100x100 --size=640x480 --save-as=Right", 0);
        QCOMPARE(fixture.savedArea(), (CaptureFrame{0, 0, 640, 480}));
        fixture.command("--use=Middle --share", 1, "no area named 'Middle'");
        fixture.command("--use=Left --share --status", 0, R"("width":600.0,"height":400.0)");
        QVERIFY(fixture.showsArea(area));
        fixture.command("--use=Right", 0); // for the next time
        QVERIFY(fixture.showsArea(area));
        fixture.end();
        QCOMPARE(fixture.savedArea(), (CaptureFrame{0, 0, 640, 480}));
        fixture.environment.remove(QStringLiteral("DISPLAY"));
        fixture.command("--forget=Right --save-as=Now --areas --json", 0,
                        R"([{"name":"Left","area":{"x":400.0,"y":300.0,"width":600.0,)"
                        R"("height":400.0}},{"name":"Now","area":{)");
    }

    void command_doesNothing_whereTheProgramIsStoppedOrElsewhere()
    {
        InstanceFixture fixture;
        QVERIFY(fixture.launch({areaOption, QStringLiteral("--share")}));
        QVERIFY(fixture.showsArea(area));
        fixture.program.sendSignal(SIGSTOP);
        fixture.command("--stop", 1, "glimmerpane: Glimmerpane is running but does not respond.\n");
        fixture.program.sendSignal(SIGCONT);
        const QString name = QStringLiteral("DISPLAY");
        const QString display = fixture.environment.value(name);
        for (const QString &other :
             {display + u'9', display + QStringLiteral(".1"), QStringLiteral("host") + display}) {
            fixture.environment.insert(name, other);
            fixture.command("--stop", 1, ("running on display " + display.toLatin1()).constData());
        }
        for (const QString &same :
             {display + QStringLiteral(".0"), QStringLiteral("unix") + display, QString()}) {
            fixture.environment.insert(name, same);
            fixture.command("--status", 0, R"("sharing":true)");
        }
    }

    void select_startsTheProgram_whereNoneRuns()
    {
        InstanceFixture fixture;
        fixture.start({areaOption, QStringLiteral("--select")});
        QVERIFY(fixture.becomes(area));
    }

    void launchesAtOnce_leaveOneProgram()
    {
        InstanceFixture fixture;
        std::vector<ChildProcess> programs;
        for (int i = 0; i < 4; ++i) {
            fixture.start();
            programs.push_back(std::move(fixture.program));
        }
        const auto running
            = [&] { return std::ranges::count_if(programs, &ChildProcess::isRunning); };
        QVERIFY(waitFor([&] { return running() == 1; }, patience));
        for (ChildProcess &program : programs) {
            QVERIFY2(program.isRunning() || program.exitCode() == 0, program.output());
        }
        fixture.command("--status", 0, "area");
    }
};

QTEST_GUILESS_MAIN(InstanceTest)
#include "InstanceTest.moc"
