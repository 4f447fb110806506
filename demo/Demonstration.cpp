// SPDX-License-Identifier: MIT
#include "demo/Demonstration.h"

#include "demo/Backdrop.h"
#include "rig/CursorPicture.h"
#include "rig/PatternAnimation.h"
#include "rig/ProgramFixture.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QFile>

namespace glimmerpane::demo
{

using namespace testing;

namespace
{

constexpr QSize screenSize(1920, 1080);
constexpr QRect area(600, 180, 1280, 720);
constexpr QRect animationPlace(1190, 240, 640, 360);
constexpr QRect latencyPatch(1500, 700, 240, 120);
constexpr QRect selectedArea(600, 180, 960, 600); ///< half of the animation stays outside
constexpr QPoint besideConfirm(40, -10); ///< from the selector's middle
constexpr QPoint pointerPlace(1020, 470);
constexpr QPoint mainWindowPlace(60, 180);
constexpr QPoint numberPlace = animationPlace.topLeft() - area.topLeft();
constexpr std::chrono::seconds countingTime{3};
constexpr int latencyChanges = 40;

void save(const QImage &picture, const char *name)
{
    require(picture.save(QString::fromLatin1(name)), "cannot write a picture");
}

QImage screenshot(const XClient &client)
{
    return withCursor(required(client.screenshot()), {}, required(currentCursor(client)));
}

/** The whole display, the main window and the output. */
void savePictures(const ProgramFixture &fixture)
{
    const auto &client = fixture.client;
    save(screenshot(client), "desktop.png");
    save(required(client.screenshot(geometryOf(client, fixture.mainWindow().value()).value())),
         "main-window.png");
    save(required(windowPicture(client, fixture.outputWindow().value())), "output.png");
}

void chooseArea(const ProgramFixture &fixture)
{
    required(setBackground(fixture.client, drawBackdrop(screenSize, area, false)));
    require(fixture.stopSharing(), "sharing does not stop");
    fixture.awaitButton(places::startSharing); // and with it "Set area"
    fixture.click(places::setArea);
    require(waitFor([&] { return fixture.selector().has_value(); }, patience),
            "the selector does not come");
    fixture.input.drag(area.bottomRight(), selectedArea.bottomRight() + QPoint(1, 1));
    fixture.input.moveTo(selectedArea.center() + besideConfirm);
    const auto isThere
        = [&] { return geometryOf(fixture.client, *fixture.selector()) == selectedArea; };
    require(waitFor(isThere, patience), "the selector does not follow the pointer");
}

void saveSelector(const ProgramFixture &fixture, PatternAnimation &animation)
{
    // Nothing but its next frame repaints the animation where the selector has been.
    const auto frozen = animation.lastFrame();
    animation.start();
    const bool moves = waitFor([&] { return animation.lastFrame() != frozen; }, patience);
    animation.freeze();
    require(moves, "the animation stands still");
    save(screenshot(fixture.client), "selector.png");
}

/** Looks for frames as they move and, once they stand still, for each pixel. */
SeenFrames compare(ProgramFixture &fixture, const CapturedWindow &output,
                   PatternAnimation &animation)
{
    awaitMotion(output, numberPlace);
    const auto frames
        = countFrames(fixture.server.displayName(), output, numberPlace, countingTime);
    animation.freeze();
    require(fixture.showsArea(area),
            "pixels of the output differ from the area's, see expected.png and actual.png");
    require(shownNumber(output, numberPlace) == animation.lastFrame(),
            "the output does not show the last frame");
    return frames;
}

} // namespace

Outcome demonstrate(const QString &program, const std::stop_token &stop)
{
    const auto goOn = [&] { require(!stop.stop_requested(), "stopped"); };
    // None of what a run may leave must be an earlier run's.
    for (const char *name :
         {"desktop", "main-window", "output", "selector", "expected", "actual"}) {
        QFile::remove(QString::fromLatin1(name) + QStringLiteral(".png"));
    }
    ProgramFixture fixture(WindowManager::Openbox, 1, screenSize);
    fixture.executable = program;
    required(setBackground(fixture.client, drawBackdrop(screenSize, area)));
    PatternAnimation animation(
        required(PatternWindow::open(fixture.server.displayName(), {.rectangle = animationPlace})));
    animation.start();
    fixture.startWith(area, mainWindowPlace, true);
    fixture.input.moveTo(pointerPlace);
    goOn();
    const auto output
        = required(CapturedWindow::open(fixture.client, fixture.outputWindow().value()));
    Outcome outcome{.frames = compare(fixture, output, animation), .latencies = {}};
    savePictures(fixture);
    goOn();
    outcome.latencies = measureLatency(fixture.client,
                                       {.output = output.window(),
                                        .area = area,
                                        .patch = latencyPatch,
                                        .changes = latencyChanges});
    goOn();
    chooseArea(fixture);
    saveSelector(fixture, animation);
    fixture.end();
    return outcome;
}

} // namespace glimmerpane::demo
