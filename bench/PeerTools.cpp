// SPDX-License-Identifier: MIT
#include "bench/PeerTools.h"

#include "bench/ObsSettings.h"
#include "rig/InputInjector.h"
#include "rig/XWindows.h"

namespace glimmerpane::bench
{

namespace
{

constexpr std::chrono::seconds windowLimit{20};
constexpr int gap = 60; ///< pixels, more than a window's title bar

testing::ChildProcess::Options gstreamer(const StageLayout &layout)
{
    const QRect area = layout.area;
    return {.program = QStringLiteral("gst-launch-1.0"),
            .arguments
            = QStringLiteral("-q ximagesrc startx=%1 starty=%2 endx=%3 endy=%4 use-damage=0 "
                             "show-pointer=true ! video/x-raw,framerate=60/1 ! "
                             "ximagesink sync=false")
                  .arg(area.left())
                  .arg(area.top())
                  .arg(area.right())
                  .arg(area.bottom())
                  .split(u' ')};
}

testing::ChildProcess::Options ffplay(const Desktop &desktop, const StageLayout &layout)
{
    return {.program = QStringLiteral("ffplay"),
            .arguments
            = QStringLiteral("-hide_banner -loglevel error -window_title Player -noborder -left %1 "
                             "-top %2 -an -fflags nobuffer -flags low_delay -framedrop -probesize "
                             "32 -analyzeduration 0 -sync ext -f x11grab -framerate 60 "
                             "-video_size %3x%4 -draw_mouse 1 -i %5+%6,%7")
                  .arg(layout.player.x())
                  .arg(layout.player.y())
                  .arg(layout.area.width())
                  .arg(layout.area.height())
                  .arg(desktop.displayName())
                  .arg(layout.area.x())
                  .arg(layout.area.y())
                  .split(u' ')};
}

std::optional<xcb_window_t> windowTitled(const testing::XClient &client, const QString &beginning)
{
    for (const auto window : testing::listWindows(client, testing::Listing::Picker)) {
        if (testing::titleOf(client, window).startsWith(beginning)) {
            return window;
        }
    }
    return std::nullopt;
}

/** Asks again and again, because a program that has just started moves its windows itself. */
Result<xcb_window_t> awaitWindow(const Desktop &desktop, testing::ChildProcess &process,
                                 const QString &beginning, const QRect &place)
{
    const auto &client = desktop.client();
    std::optional<xcb_window_t> window;
    const auto isThere = [&] {
        window = windowTitled(client, beginning);
        const auto seen = window ? testing::geometryOf(client, *window) : std::nullopt;
        if (!seen) {
            return !process.isRunning();
        }
        if (seen->size() == place.size()
            && (seen->topLeft() - place.topLeft()).manhattanLength() < gap) {
            return true;
        }
        const uint32_t values[]
            = {static_cast<uint32_t>(place.x()), static_cast<uint32_t>(place.y()),
               static_cast<uint32_t>(place.width()), static_cast<uint32_t>(place.height())};
        xcb_configure_window(client.connection(), *window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                                 | XCB_CONFIG_WINDOW_HEIGHT,
                             values);
        client.flush();
        desktop.rest(std::chrono::milliseconds(100));
        return false;
    };
    if (!desktop.waitFor(isThere, windowLimit) || !window) {
        return failure(
            QStringLiteral("its window \"%1\" does not come to its place; it said: %2")
                .arg(beginning, QString::fromLocal8Bit(process.output().right(300)).simplified()));
    }
    return *window;
}

Result<RunningTool> running(const Desktop &desktop, xcb_window_t window, testing::PictureOf source)
{
    auto view = testing::CapturedWindow::open(desktop.client(), window, source);
    return view ? Result<RunningTool>(RunningTool{.view = std::move(*view), .source = source})
                : failure(view.error());
}

Result<RunningTool> startGlimmerpane(const Desktop &desktop, const ToolOptions &options)
{
    auto program = Program::start(
        desktop, {.executable = options.glimmerpane, .area = options.layout.area, .share = true});
    if (!program) {
        return failure(program.error());
    }
    const auto placed = program->placeMainWindow(options.layout.beside, options.layout.area);
    const auto output = placed ? program->outputWindow() : failure(placed.error());
    auto tool = output ? running(desktop, *output, testing::PictureOf::Composite)
                       : failure(output.error());
    if (tool) {
        tool->glimmerpane.emplace(std::move(*program));
    }
    return tool;
}

Result<RunningTool> startPlayer(const Desktop &desktop, testing::ChildProcess::Options command,
                                const StageLayout &layout, const QString &title)
{
    if (command.environment == QProcessEnvironment::systemEnvironment()) {
        command.environment = desktop.environment();
    }
    auto process = testing::ChildProcess::start(command);
    if (!process) {
        return failure(process.error());
    }
    const auto window = awaitWindow(desktop, *process, title, layout.player);
    auto tool
        = window ? running(desktop, *window, testing::PictureOf::Screen) : failure(window.error());
    if (tool) {
        tool->process = std::move(*process);
    }
    return tool;
}

Result<RunningTool> startObs(const Desktop &desktop, const StageLayout &layout)
{
    const auto environment = obsSettings::write(desktop, layout.area);
    if (!environment) {
        return failure(environment.error());
    }
    // Without a dialog about another instance or an update.
    auto tool = startPlayer(
        desktop,
        {.program = QStringLiteral("obs"),
         .arguments = {QStringLiteral("--multi"), QStringLiteral("--disable-updater")},
         .environment = *environment},
        layout, QStringLiteral("Windowed Projector"));
    if (!tool) {
        return tool;
    }
    const auto main = awaitWindow(desktop, tool->process, QStringLiteral("OBS"),
                                  QRect(layout.beside, obsSettings::mainWindowSize));
    return main ? std::move(tool) : failure(main.error());
}

} // namespace

QString toolName(Tool tool)
{
    switch (tool) {
    case Tool::Glimmerpane:
        return QStringLiteral("Glimmerpane");
    case Tool::GStreamer:
        return QStringLiteral("GStreamer");
    case Tool::Ffplay:
        return QStringLiteral("ffplay");
    case Tool::Obs:
        break;
    }
    return QStringLiteral("OBS Studio");
}

StageLayout StageLayout::of(QSize areaSize)
{
    const QRect area(QPoint(gap, gap), areaSize);
    const QRect player = area.translated(0, areaSize.height() + gap);
    const QPoint beside(area.right() + gap, gap);
    return {.area = area,
            .player = player,
            .beside = beside,
            .screen = {beside.x() + obsSettings::mainWindowSize.width() + gap,
                       std::max(player.bottom(), obsSettings::mainWindowSize.height()) + 2 * gap}};
}

Result<RunningTool> startTool(const Desktop &desktop, const ToolOptions &options)
{
    constexpr QPoint inside(40, 40);
    testing::InputInjector(desktop.client()).moveTo(options.layout.area.bottomRight() - inside);
    switch (options.tool) {
    case Tool::Glimmerpane:
        return startGlimmerpane(desktop, options);
    case Tool::GStreamer:
        return startPlayer(desktop, gstreamer(options.layout), options.layout,
                           QStringLiteral("gst-launch"));
    case Tool::Ffplay:
        return startPlayer(desktop, ffplay(desktop, options.layout), options.layout,
                           QStringLiteral("Player"));
    case Tool::Obs:
        break;
    }
    return startObs(desktop, options.layout);
}

} // namespace glimmerpane::bench
