// SPDX-License-Identifier: MIT
#include "rig/ColorWindow.h"
#include "rig/FrameNumber.h"
#include "rig/PatternAnimation.h"
#include "rig/PictureComparison.h"
#include "rig/ProgramFixture.h"
#include "rig/SwayServer.h"
#include "rig/VirtualPointer.h"
#include "tests/desktop/SwayViewer.h"

#include <QJsonObject>
#include <QTest>

#include <csignal>
#include <set>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

// The output is 1280 x 720 pixels, so this is its rectangle (40, 300) to (360, 540).
const QString areaOption = QStringLiteral("--area=40,180,320x240");
constexpr QRect area(40, 300, 320, 240);
constexpr QPoint aside(1200, 50);
const QString firstOutput = QStringLiteral("HEADLESS-1");

/** The built program in a private sway, operated as by a user. */
struct SwayFixture {
    SwayServer server = required(SwayServer::start());
    XClient client = required(XClient::connect(server.displayName()));
    VirtualPointer pointer = required(VirtualPointer::plugIn(server.socket()));
    SessionBus bus = required(SessionBus::start());
    QTemporaryDir folder; ///< for everything that the program stores
    ChildProcess program;

    SwayFixture() { pointer.moveTo(aside); }

    ChildProcess launch(const QStringList &arguments) const
    {
        auto environment = server.environment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        for (const char *name :
             {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
            environment.insert(QString::fromLatin1(name), folder.path());
        }
        return required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                             .arguments = arguments,
                                             .environment = environment}));
    }

    void start(const QStringList &arguments) { program = launch(arguments); }

    /** Passes options to the running program. */
    bool obeys(const QStringList &arguments, QByteArray *says = nullptr) const
    {
        auto second = launch(arguments);
        const bool isDone = second.waitForEnd(patience) && second.exitCode() == 0;
        if (says != nullptr) {
            *says = second.output();
        }
        return isDone;
    }

    bool isSharing() const
    {
        QByteArray says;
        return obeys({QStringLiteral("--status")}, &says) && says.contains("\"sharing\":true");
    }

    ColorWindow window(QRect rectangle, QRgb color) const
    {
        return required(ColorWindow::show(client, {.rectangle = rectangle, .color = color}));
    }

    /** Where the output is that is not the first one; empty if there is none. */
    QRect ownPlace() const
    {
        for (const QString &name : server.outputNames()) {
            if (name != firstOutput) {
                return server.outputPlace(name);
            }
        }
        return {};
    }

    /** The rectangle of the output made for the window, once it has this size. */
    QRect awaitOutput(QSize size) const
    {
        QRect place;
        const auto isThere = [&] {
            place = ownPlace();
            return place.size() == size;
        };
        if (!waitFor(isThere, patience)) {
            throw Failure(QStringLiteral("there is no output of the area's size; the program said ")
                          + QString::fromLocal8Bit(program.output()));
        }
        return place;
    }

    /** Whether the output shows the area, pointer included, in exactly its pixels. */
    bool showsArea(QRect output, QRect rectangle = area) const
    {
        return becomeEqual([&] { return server.screenshot(output); },
                           [&] { return server.screenshot(rectangle, SwayServer::Pointer::Shown); },
                           patience);
    }

    /** Whether the output of our own is gone or, where sway keeps it, shows nothing of the area. */
    bool showsNothing() const
    {
        const QRect place = ownPlace();
        return place.isEmpty() || !contains(server.screenshot(place), sign);
    }

    static bool contains(const QImage &picture, QRgb color)
    {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) == color) {
                    return true;
                }
            }
        }
        return false;
    }

    QJsonObject focusedWorkspace() const
    {
        for (const auto &workspace : server.ask(QStringLiteral("get_workspaces"))) {
            if (workspace.toObject().value(QStringLiteral("focused")).toBool()) {
                return workspace.toObject();
            }
        }
        return {};
    }

    bool isFocusOn(const QString &output) const
    {
        return focusedWorkspace().value(QStringLiteral("output")).toString() == output;
    }

    /**
     * Sway's number of what has the keyboard: of a workspace where no window has, 0 if nothing in
     * its tree.
     */
    int keyboardFocus() const
    {
        const auto seats = server.ask(QStringLiteral("get_seats"));
        return seats.first().toObject().value(QStringLiteral("focus")).toInt();
    }

    static constexpr QRgb sign = 0xff12ab34; ///< a colour that only the area shows
};

} // namespace

class SwayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void area_fillsAnOutputOfItsOwn_untilItIsStopped()
    {
        SwayFixture fixture;
        const auto window = fixture.window(area.adjusted(20, 20, 50, -50), SwayFixture::sign);
        const QRect first = fixture.server.outputPlace(firstOutput);
        fixture.start({areaOption, QStringLiteral("--share")});
        for (int round = 0; round < 2; ++round) {
            const QRect output = fixture.awaitOutput(area.size());
            QVERIFY(fixture.showsArea(output));
            fixture.pointer.moveTo(area.center());
            window.setColor(0xffff0000);
            QVERIFY(fixture.showsArea(output));
            window.setColor(SwayFixture::sign);
            fixture.pointer.moveTo(aside);
            QVERIFY(fixture.showsArea(output));
            QCOMPARE(fixture.server.outputPlace(firstOutput), first);

            QVERIFY(fixture.obeys({QStringLiteral("--stop")}));
            QVERIFY(waitFor([&] { return fixture.showsNothing(); }, patience));
            QCOMPARE(fixture.server.outputPlace(firstOutput), first);
            QVERIFY(fixture.obeys({QStringLiteral("--share")}));
        }
        fixture.program.sendSignal(SIGTERM);
        QVERIFY(fixture.program.waitForEnd(patience));
        QCOMPARE(fixture.program.exitCode(), 0);
        QVERIFY(waitFor([&] { return fixture.showsNothing(); }, patience));
        QVERIFY2(fixture.server.outputNames().size() <= 2, "outputs add up");
    }

    void session_isMovedAndPaused_onTheSameOutput()
    {
        SwayFixture fixture;
        const auto window = fixture.window(area.adjusted(20, 20, 50, -50), SwayFixture::sign);
        const auto other = fixture.window({700, 100, 200, 200}, 0xff00ffff);
        fixture.start({areaOption, QStringLiteral("--share")});
        const QRect output = fixture.awaitOutput(area.size());
        QVERIFY(fixture.showsArea(output));
        QVERIFY(fixture.obeys({QStringLiteral("--frame=on")})); // which the output never shows
        const auto bar = [&] { return fixture.server.screenshot({38, 400, 1, 1}).pixel(0, 0); };
        QVERIFY(waitFor([&] { return bar() == 0xff007aff; }, patience));
        QVERIFY(fixture.showsArea(output));
        QVERIFY(fixture.obeys({QStringLiteral("--move=690,400")}));
        QVERIFY(fixture.showsArea(output, {690, 80, 320, 240}));
        QVERIFY(fixture.obeys({QStringLiteral("--pause")}));
        const QImage kept = fixture.server.screenshot(output);
        other.setColor(0xffff0000);
        QVERIFY(waitFor(
            [&] { return fixture.server.screenshot({750, 150, 1, 1}).pixel(0, 0) == 0xffff0000; },
            patience));
        QCOMPARE(fixture.server.screenshot(output), kept);
        // Half as wide, so that there is black on both sides.
        QVERIFY(fixture.obeys({QStringLiteral("--move=690,400,160x240")}));
        QVERIFY(fixture.obeys({QStringLiteral("--resume")}));
        QVERIFY(fixture.showsArea({output.topLeft() + QPoint(80, 0), QSize(160, 240)},
                                  {690, 80, 160, 240}));
        QImage side(80, 240, QImage::Format_RGB32);
        side.fill(Qt::black);
        for (const QPoint place : {QPoint(0, 0), QPoint(240, 0)}) {
            QCOMPARE(fixture.server.screenshot({output.topLeft() + place, side.size()})
                         .convertToFormat(QImage::Format_RGB32),
                     side);
        }
        QCOMPARE(fixture.ownPlace(), output);
    }

    void nextStart_removesWhatACrashLeft()
    {
        SwayFixture fixture;
        const auto window = fixture.window(area, SwayFixture::sign);
        fixture.start({areaOption, QStringLiteral("--share")});
        QVERIFY(fixture.showsArea(fixture.awaitOutput(area.size())));
        fixture.program.kill();
        fixture.start({});
        QVERIFY(waitFor([&] { return fixture.isSharing() || fixture.showsNothing(); }, patience));
        QVERIFY(fixture.showsNothing());
        // Again, and it shares at once.
        fixture.program.kill();
        fixture.start({QStringLiteral("--area=40,180,200x100"), QStringLiteral("--share")});
        QVERIFY(waitFor([&] { return fixture.isSharing(); }, patience));
        QVERIFY2(fixture.server.outputNames().size() <= 2, "outputs add up");
    }

    void people_cannotGetToTheOutput()
    {
        SwayFixture fixture;
        fixture.start({areaOption, QStringLiteral("--output-window=managed")});
        const auto isOpen = [&] {
            const int focus = fixture.keyboardFocus();
            return focus != 0
                && focus != fixture.focusedWorkspace().value(QStringLiteral("id")).toInt()
                && fixture.obeys({QStringLiteral("--status")});
        };
        QVERIFY(waitFor(isOpen, patience));
        QVERIFY(fixture.program.output().contains("--output-window=managed has no effect"));
        const int mainWindow = fixture.keyboardFocus();
        QVERIFY(fixture.obeys({QStringLiteral("--share")}));
        const QRect output = fixture.awaitOutput(area.size());
        QVERIFY(fixture.showsArea(output));
        QVERIFY(fixture.isFocusOn(firstOutput));
        QCOMPARE(fixture.keyboardFocus(), mainWindow);
        const QRect first = fixture.server.outputPlace(firstOutput);
        // Neither by going on to the next output, nor by the number of its workspace.
        for (const QString &command :
             {QStringLiteral("focus output right"), QStringLiteral("focus output down"),
              QStringLiteral("workspace number 2")}) {
            QVERIFY(fixture.server.command(command));
            QVERIFY(waitFor([&] { return fixture.isFocusOn(firstOutput); }, patience));
        }
        const auto managed = required(ColorWindow::show(fixture.client,
                                                        {.rectangle = {0, 0, 100, 100},
                                                         .color = 0xff00ffff,
                                                         .kind = ColorWindow::Kind::Managed}));
        const auto place = [&] { return geometryOf(fixture.client, managed.id()); };
        QVERIFY(waitFor([&] { return isViewable(fixture.client, managed.id()); }, patience));
        QVERIFY(fixture.server.outputPlace(firstOutput).contains(place()->topLeft()));
        QVERIFY(
            fixture.server.command(QStringLiteral("reload"))); // which forgets the output's mode
        QVERIFY(waitFor([&] { return fixture.ownPlace() == output; }, patience));
        QCOMPARE(fixture.server.outputPlace(firstOutput), first);
        QVERIFY(fixture.showsArea(output));
    }

    void selector_followsThePointer_alsoOutsideOfIt()
    {
        SwayFixture fixture;
        fixture.start({QStringLiteral("--area=100,100,600x400"), QStringLiteral("--select")});
        const auto isOpen = [&] {
            const auto overlay
                = findWindow(fixture.client, QStringLiteral("Glimmerpane - Area"), Listing::All);
            return overlay && isViewable(fixture.client, *overlay);
        };
        const auto shows = [&](QPoint place, QRgb color) {
            return waitFor(
                [&] {
                    const QImage pixel = fixture.server.screenshot({place, QSize(1, 1)});
                    return !pixel.isNull() && pixel.pixel(0, 0) == color;
                },
                patience);
        };
        constexpr QRgb background = 0xff336699; // as the rig has configured it
        constexpr QRgb handle = 0xff007aff;
        QVERIFY(waitFor(isOpen, patience));
        QVERIFY(shows({105, 225}, handle)); // its top-left corner, 100 points above the bottom
        QVERIFY(shows({105, 100}, background));
        // By its inside, then by its right edge; each in one leap, far out of where it was.
        fixture.pointer.leap({150, 350}, {250, 150});
        QVERIFY(shows({205, 25}, handle));
        QVERIFY(shows({105, 600}, background));
        fixture.pointer.leap({798, 120}, {1100, 500});
        QVERIFY(shows({1095, 25}, handle));
        // A press beside it does nothing.
        fixture.pointer.leap({100, 700}, {600, 100});
        QVERIFY(shows({205, 25}, handle));
        constexpr QPoint confirm(650, 205);
        fixture.pointer.click(confirm);
        QVERIFY(waitFor([&] { return !isOpen(); }, patience));
        QByteArray status;
        const auto isSaved = [&] {
            return fixture.obeys({QStringLiteral("--status")}, &status)
                && status.contains(R"("area":{"x":200.0,"y":300.0,"width":900.0,"height":400.0})");
        };
        QVERIFY2(waitFor(isSaved, patience), status.constData());
    }

    void call_getsAnAnimation_fromTheOutput()
    {
        SwayFixture fixture;
        auto pattern
            = required(PatternWindow::open(fixture.server.displayName(), {.rectangle = area}));
        fixture.start({areaOption, QStringLiteral("--share")});
        const QRect output = fixture.awaitOutput(area.size());
        PatternAnimation animation(std::move(pattern));
        animation.start();
        // What a call gets: the portal there copies the output by the same protocol.
        SwayViewer call(fixture.server);
        std::set<uint32_t> seen;
        call.onPicture = [&] {
            if (const auto number = frameNumber::read(call.picture)) {
                seen.insert(*number);
            }
        };
        QVERIFY(call.watch(output));
        const auto isOver = [&] { return !seen.empty() && *seen.rbegin() - *seen.begin() >= 60; };
        QVERIFY(waitFor(isOver, patience));
        qInfo("%zu of %u frames", seen.size(), *seen.rbegin() - *seen.begin() + 1);
        QVERIFY(seen.size() >= 25);
        animation.freeze();
        QVERIFY(fixture.showsArea(output));
        QVERIFY(call.showsPlace());
    }
};

QTEST_GUILESS_MAIN(SwayTest)
#include "SwayTest.moc"
