// SPDX-License-Identifier: MIT
#include "demo/Demonstration.h"

#include "demo/Backdrop.h"
#include "rig/ChangeLatency.h"
#include "rig/CursorPicture.h"
#include "rig/InputInjector.h"
#include "rig/XWindows.h"

#include <QFile>

namespace glimmerpane::demo
{

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
constexpr std::chrono::seconds pictureLimit{5};
constexpr std::chrono::seconds countingTime{3};
constexpr int latencyChanges = 40;

/** Everything that a run may leave; none of it must be an earlier run's. */
QStringList pictureNames()
{
    return {QStringLiteral("desktop.png"),  QStringLiteral("main-window.png"),
            QStringLiteral("output.png"),   QStringLiteral("selector.png"),
            QStringLiteral("expected.png"), QStringLiteral("actual.png")};
}

QPoint numberPlace()
{
    return animationPlace.topLeft() - area.topLeft();
}

/** The smallest rectangle around all pixels that differ, and how many they are. */
std::pair<QRect, int> difference(const QImage &left, const QImage &right)
{
    QRect bounds;
    int count = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            if (left.pixel(x, y) == right.pixel(x, y)) {
                continue;
            }
            bounds |= QRect(x, y, 1, 1);
            ++count;
        }
    }
    return {bounds, count};
}

} // namespace

Demonstration::Demonstration(const Options &options, std::unique_ptr<Desktop> desktop)
    : options_(options)
    , desktop_(std::move(desktop))
{
}

Result<Demonstration::Outcome> Demonstration::run(const Options &options)
{
    for (const QString &name : pictureNames()) {
        QFile::remove(options.output.filePath(name));
    }
    auto desktop = Desktop::start({.screen = screenSize, .stop = options.stop});
    if (!desktop) {
        return testing::failure(desktop.error());
    }
    Demonstration demo(options, std::move(*desktop));
    for (const auto step : {&Demonstration::prepareScene, &Demonstration::startProgram,
                            &Demonstration::placeMainWindow, &Demonstration::awaitLivePicture}) {
        if (const auto done = (demo.*step)(); !done) {
            return testing::failure(done.error());
        }
    }
    const auto output = testing::CapturedWindow::open(demo.desktop_->client(), demo.output_);
    const auto frames = output ? countFrames(*demo.desktop_, *output, numberPlace(), countingTime)
                               : testing::failure(output.error());
    if (!frames) {
        return testing::failure(frames.error());
    }
    demo.animation_->freeze();
    for (const auto step : {&Demonstration::comparePictures, &Demonstration::savePictures}) {
        if (const auto done = (demo.*step)(); !done) {
            return testing::failure(done.error());
        }
    }
    const auto latencies = measureLatency(
        *demo.desktop_,
        {.output = demo.output_, .area = area, .patch = latencyPatch, .changes = latencyChanges});
    if (!latencies) {
        return testing::failure(latencies.error());
    }
    for (const auto step : {&Demonstration::openSelector, &Demonstration::saveSelector}) {
        if (const auto done = (demo.*step)(); !done) {
            return testing::failure(done.error());
        }
    }
    if (const auto ended = demo.program_->end(); !ended) {
        return testing::failure(ended.error());
    }
    return Outcome{.frames = *frames, .latencies = *latencies};
}

Result<void> Demonstration::prepareScene()
{
    const auto &client = desktop_->client();
    const auto background = setBackground(client, drawBackdrop(screenSize, area));
    if (!background) {
        return background;
    }
    auto window = PatternWindow::open(desktop_->displayName(), animationPlace);
    if (!window) {
        return testing::failure(window.error());
    }
    animation_ = std::make_unique<PatternAnimation>(std::move(*window));
    animation_->start();
    return {};
}

Result<void> Demonstration::startProgram()
{
    auto program = Program::start(*desktop_,
                                  {.executable = options_.executable, .area = area, .share = true});
    if (!program) {
        return testing::failure(program.error());
    }
    program_.emplace(std::move(*program));
    const auto mainWindow = program_->mainWindow();
    const auto output = mainWindow ? program_->outputWindow() : mainWindow;
    if (!output) {
        return testing::failure(output.error());
    }
    mainWindow_ = *mainWindow;
    output_ = *output;
    return {};
}

Result<void> Demonstration::placeMainWindow()
{
    return program_->placeMainWindow(mainWindowPlace, area);
}

Result<void> Demonstration::awaitLivePicture()
{
    testing::InputInjector(desktop_->client()).moveTo(pointerPlace);
    const auto captured = testing::CapturedWindow::open(desktop_->client(), output_);
    if (!captured) {
        return testing::failure(captured.error());
    }
    if (captured->size() != area.size()) {
        return testing::failure(QStringLiteral("the output is %1x%2 and not %3x%4")
                                    .arg(captured->size().width())
                                    .arg(captured->size().height())
                                    .arg(area.width())
                                    .arg(area.height()));
    }
    std::optional<uint32_t> first;
    const auto isLive = [&] {
        const auto number = shownNumber(*captured, numberPlace());
        if (number && !first) {
            first = *number;
        }
        return number && *number > *first;
    };
    if (!desktop_->waitFor(isLive, pictureLimit)) {
        return testing::failure(first ? QStringLiteral("the output's picture stands still")
                                      : QStringLiteral("the output shows no frame number"));
    }
    return {};
}

Result<QImage> Demonstration::expectedPicture() const
{
    const auto screen = desktop_->client().screenshot(area);
    const auto cursor = testing::currentCursor(desktop_->client());
    if (!screen || !cursor) {
        return testing::failure(screen ? cursor.error() : screen.error());
    }
    return testing::withCursor(*screen, area.topLeft(), *cursor);
}

Result<void> Demonstration::comparePictures()
{
    auto captured = testing::CapturedWindow::open(desktop_->client(), output_);
    if (!captured) {
        return testing::failure(captured.error());
    }
    Result<QImage> expected;
    Result<QImage> actual;
    const auto isSame = [&] {
        expected = expectedPicture();
        actual = captured->picture();
        return expected && actual && *expected == *actual;
    };
    const bool same = desktop_->waitFor(isSame, pictureLimit);
    if (!expected || !actual) {
        return testing::failure(expected ? actual.error() : expected.error());
    }
    if (!same) {
        return testing::failure(describeMismatch(*expected, *actual));
    }
    const auto number = shownNumber(*captured, numberPlace());
    if (!number || *number != animation_->lastFrame()) {
        return testing::failure(QStringLiteral("the output does not show the last frame"));
    }
    return {};
}

QString Demonstration::describeMismatch(const QImage &expected, const QImage &actual) const
{
    for (const auto &[picture, name] : {std::pair(&expected, QStringLiteral("expected.png")),
                                        std::pair(&actual, QStringLiteral("actual.png"))}) {
        if (const auto saved = save(*picture, name); !saved) {
            return saved.error();
        }
    }
    if (expected.size() != actual.size()) {
        return QStringLiteral("the output has not the area's size");
    }
    const auto [bounds, count] = difference(expected, actual);
    return QStringLiteral("%1 pixels of the output differ from the area's, within %2x%3 at %4,%5 "
                          "of it; see expected.png and actual.png")
        .arg(count)
        .arg(bounds.width())
        .arg(bounds.height())
        .arg(bounds.x())
        .arg(bounds.y());
}

Result<void> Demonstration::savePictures()
{
    const auto &client = desktop_->client();
    const auto cursor = testing::currentCursor(client);
    const auto screen = client.screenshot();
    const auto frame = testing::geometryOf(client, topLevelOf(client, mainWindow_));
    const auto output = testing::windowPicture(client, output_);
    if (!cursor || !screen || !output || !frame) {
        return testing::failure(QStringLiteral("cannot take the pictures"));
    }
    const std::pair<QString, QImage> pictures[]
        = {{QStringLiteral("desktop.png"), testing::withCursor(*screen, {}, *cursor)},
           {QStringLiteral("main-window.png"), screen->copy(*frame)},
           {QStringLiteral("output.png"), *output}};
    for (const auto &[name, picture] : pictures) {
        if (const auto saved = save(picture, name); !saved) {
            return saved;
        }
    }
    return {};
}

Result<void> Demonstration::openSelector()
{
    const auto &client = desktop_->client();
    const auto redrawn = setBackground(client, drawBackdrop(screenSize, area, false));
    const auto stopped = redrawn ? program_->clickStop() : redrawn;
    const auto selector = stopped ? program_->openSelector() : testing::failure(stopped.error());
    if (!selector) {
        return testing::failure(selector.error());
    }
    const testing::InputInjector person(client);
    person.drag(area.bottomRight(), selectedArea.bottomRight() + QPoint(1, 1));
    person.moveTo(selectedArea.center() + besideConfirm);
    const auto isThere = [&] { return testing::geometryOf(client, *selector) == selectedArea; };
    if (!desktop_->waitFor(isThere, pictureLimit)) {
        return testing::failure(QStringLiteral("the selector does not follow the pointer"));
    }
    return {};
}

Result<void> Demonstration::saveSelector()
{
    // Nothing but its next frame repaints the animation where the selector has been.
    const auto frozen = animation_->lastFrame();
    animation_->start();
    const auto isRepainted = [&] { return animation_->lastFrame() != frozen; };
    const bool isWhole = desktop_->waitFor(isRepainted, pictureLimit);
    animation_->freeze();
    const auto cursor = testing::currentCursor(desktop_->client());
    const auto screen = desktop_->client().screenshot();
    if (!isWhole || !cursor || !screen) {
        return testing::failure(QStringLiteral("cannot take the selector's picture"));
    }
    return save(testing::withCursor(*screen, {}, *cursor), QStringLiteral("selector.png"));
}

Result<void> Demonstration::save(const QImage &picture, const QString &name) const
{
    const QString path = options_.output.filePath(name);
    if (!picture.save(path)) {
        return testing::failure(QStringLiteral("cannot write %1").arg(path));
    }
    return {};
}

} // namespace glimmerpane::demo
