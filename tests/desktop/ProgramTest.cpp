// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/ProgramFixture.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QTest>

#include <csignal>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

using WindowManager = ProgramFixture::WindowManager;

// The display is 1280 x 1024 pixels, so this is its rectangle (40, 604) to (360, 844).
const QString areaOption = QStringLiteral("--area=40,180,320x240");
constexpr QRect area(40, 604, 320, 240);
constexpr CaptureFrame frame{.x = 40, .y = 180, .width = 320, .height = 240};

Result<ColorWindow> colorUnderArea(const ProgramFixture &fixture)
{
    return ColorWindow::show(fixture.client,
                             {.rectangle = area.adjusted(20, 20, 50, -50), .color = 0xff0000ff});
}

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void person_sharesTypedNumbers_andFindsThemAgain()
    {
        ProgramFixture fixture(WindowManager::Openbox);
        const auto window = colorUnderArea(fixture);
        fixture.start();
        QVERIFY(fixture.waitForMainWindow());
        QVERIFY(fixture.typeArea(frame));
        fixture.click(places::startSharing);
        QVERIFY(fixture.showsArea(area));
        fixture.input.moveTo(area.center());
        QVERIFY(fixture.showsArea(area));
        QVERIFY(fixture.stopSharing());
        QVERIFY(waitFor([&] { return !fixture.isCapturing(); }, patience));

        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
        fixture.start({QStringLiteral("--share")});
        QVERIFY(fixture.showsArea(area));
        QVERIFY(fixture.isCapturing());
    }

    void program_endsCleanly_whateverItDoes()
    {
        // It shares, or shows an alert; the signal 0 stands for a closed window.
        for (const auto &[areaText, signal] : {std::pair(areaOption, 0),
                                               {areaOption, SIGINT},
                                               {areaOption, SIGTERM},
                                               {QStringLiteral("--area=0,0,0x100"), SIGTERM}}) {
            ProgramFixture fixture(WindowManager::Openbox);
            fixture.start({areaText, QStringLiteral("--share")});
            const auto isThere
                = [&] { return fixture.outputWindow() || fixture.shownWindows() == 2; };
            QVERIFY(waitFor(isThere, patience));
            if (signal == 0) {
                const auto isAsked = [&] {
                    askToClose(fixture.client, *fixture.mainWindow());
                    return waitFor([&] { return fixture.shownWindows() == 2; }, patience);
                };
                for (const auto key : {keys::escape, keys::enter}) {
                    QVERIFY(isAsked() && fixture.answerAlert(key));
                    QVERIFY(fixture.showsArea(area));
                }
                const auto quits = [&] {
                    return isAsked() && fixture.input.typeKey(keys::tab)
                        && fixture.input.typeKey(keys::space)
                        && fixture.program.waitForEnd(std::chrono::seconds(1));
                };
                QVERIFY(waitFor(quits, patience));
            } else {
                fixture.program.sendSignal(signal);
            }
            QCOMPARE(fixture.waitForExit(), 0);
            QVERIFY(!fixture.outputWindow());
        }
    }

    void pixels_areTheRightOnes_atScaleFactorTwo()
    {
        ProgramFixture fixture(WindowManager::None, 2);
        const auto window = colorUnderArea(fixture);
        fixture.start({QStringLiteral("--area=20,90,160x120"), QStringLiteral("--share")});
        QVERIFY(fixture.showsArea(area));
        QCOMPARE(geometryOf(fixture.client, *fixture.outputWindow()),
                 QRect(QPoint(-10000, -10000), area.size()));
        fixture.input.moveTo(area.center());
        QVERIFY(fixture.showsArea(area));
        // Its corners are as round as pixels allow, which are smaller than points.
        const QPoint corner = geometryOf(fixture.client, *fixture.mainWindow())->topLeft();
        const auto row = [&](int y) {
            return required(fixture.client.screenshot({corner + QPoint(0, y), QSize(16, 1)}));
        };
        QVERIFY(row(0) != row(1));
        // The first area of a new user is the whole display, in points.
        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
        QVERIFY(QFile::remove(fixture.settingsFile()));
        fixture.start({QStringLiteral("--share")});
        QVERIFY(fixture.showsArea({0, 0, 1280, 1024}));
        QTRY_COMPARE(fixture.savedArea(), (CaptureFrame{0, 0, 640, 512}));
    }

    void press_showsNoRing_onTheProgramsOwnWindows()
    {
        for (const auto manager : {WindowManager::None, WindowManager::Openbox}) {
            ProgramFixture fixture(manager);
            fixture.start({QStringLiteral("--area=0,0,1280x1024"), QStringLiteral("--share")});
            QVERIFY(fixture.showsArea({0, 0, 1280, 1024}));
            const QRect main = *geometryOf(fixture.client, *fixture.mainWindow());
            // A field, which shows the press, then a place where the desktop is.
            const QPoint own = main.topLeft() + places::fields[0];
            const QPoint other(1100, 900);
            fixture.input.click(own);
            QVERIFY(waitFor([&] { return fixture.isFocused(places::fields[0]); }, patience));
            fixture.input.click(other);
            const QRect around(own - QPoint(40, 20), QSize(80, 40));
            QVERIFY(waitFor(
                [&] {
                    const auto picture = windowPicture(fixture.client, *fixture.outputWindow());
                    return picture && qBlue(picture->pixel(other + QPoint(29, 0))) > 80
                        && picture->copy(around) == required(fixture.client.screenshot(around));
                },
                patience));
            QVERIFY(fixture.showsArea({0, 0, 1280, 1024}));
        }
    }

    void program_fails_whenTheXServerDies()
    {
        ProgramFixture fixture;
        fixture.start({areaOption, QStringLiteral("--share")});
        QVERIFY(fixture.showsArea(area));
        const QPoint field = places::fields[0];
        const QPoint origin = geometryOf(fixture.client, *fixture.mainWindow())->topLeft();
        const auto hasLongNumber = [&] { // whose digits reach to the right of the middle
            const QRect place(origin + field + QPoint(10, -4), QSize(10, 9));
            const QImage picture = required(fixture.client.screenshot(place));
            int darkest = 255;
            for (int i = 0; i < picture.width() * picture.height(); ++i) {
                darkest = std::min(darkest,
                                   qGray(picture.pixel(i % picture.width(), i / picture.width())));
            }
            return darkest < 100;
        };
        QVERIFY(!hasLongNumber());
        QVERIFY(fixture.type(field, "12345678901"));
        QVERIFY(waitFor(hasLongNumber, patience));
        fixture.server.kill(); // before what was typed has been written
        QCOMPARE(fixture.waitForExit(), 1);
        QVERIFY(fixture.program.output().contains("X"));
        QVERIFY(fixture.savedArea()->x > 12345);
    }

    void failedStart_saysWhatIsMissing()
    {
        const auto server = required(XvfbServer::start(
            {.arguments = {QStringLiteral("-extension"), QStringLiteral("Composite")}}));
        auto environment = server.environment();
        environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("*.info=true"));
        for (const char *option : {"--share", "--select"}) {
            auto program
                = required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                                .arguments = {QLatin1String(option)},
                                                .environment = environment}));
            for (const char *text : {"extension Composite 0.2 is missing",
                                     "glimmerpane: The X server lacks the Composite", "ssh -Y"}) {
                QVERIFY2(waitFor([&] { return program.output().contains(text); }, patience), text);
            }
            program.sendSignal(SIGTERM); // an alert is up
            QVERIFY(program.waitForEnd(patience));
            QCOMPARE(program.exitCode(), 0);
        }
    }

    void commandLine_isAnswered_withoutADisplay_inThePersonsLanguage()
    {
        struct Row {
            QString arguments;
            int exitCode;
            QByteArray says;
            const char *locale = "C";
            const char *preferred = ""; ///< languages
        };
        const QByteArray english = "glimmerpane: Unexpected argument 'x'.\n";
        const QByteArray german = "glimmerpane: Unerwartetes Argument „x“.\n";
        const QByteArray french = "glimmerpane: Argument inattendu « x ».\n";
        const QString wrong = QStringLiteral("x");
        for (const auto &[arguments, exitCode, says, locale, preferred] :
             {Row{QStringLiteral("--help"), 0, "--area"},
              Row{QStringLiteral("--version"), 0, "glimmerpane 0."},
              Row{QStringLiteral("--area 1,2,3"), 2, "'1,2,3' is not an area"},
              Row{{}, 1, "Cannot connect to an X server"}, Row{wrong, 2, german, "de_DE.UTF-8"},
              Row{wrong, 2, german, "de_AT.UTF-8"}, Row{wrong, 2, french, "fr_CA.UTF-8"},
              Row{wrong, 2, english, "ja_JP.UTF-8"},
              Row{wrong, 2, french, "ja_JP.UTF-8", "ja:fr:de"},
              Row{wrong, 2, english, "de_DE.UTF-8", "en_GB:de"},
              Row{wrong, 2, english, "C", "de"}}) {
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.remove(QStringLiteral("DISPLAY"));
            environment.insert(QStringLiteral("LC_ALL"), QLatin1String(locale));
            environment.insert(QStringLiteral("LANGUAGE"), QLatin1String(preferred));
            auto program = required(
                ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                     .arguments = arguments.split(u' ', Qt::SkipEmptyParts),
                                     .environment = environment}));
            QVERIFY(program.waitForEnd(patience));
            QCOMPARE(program.exitCode(), exitCode);
            QVERIFY2(program.output().contains(says), program.output());
            // Qt 6.8 first deplores that the locale is not installed.
            const QByteArray own = program.output().mid(program.output().indexOf("glimmerpane: "));
            QVERIFY(exitCode == 0 || own.count('\n') == 1);
        }
    }
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"
