// SPDX-License-Identifier: MIT
#include "bench/PeerTools.h"

#include "bench/ObsSettings.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

namespace glimmerpane::bench
{

namespace
{

constexpr std::chrono::seconds windowLimit{20};
constexpr int gap = 60; ///< pixels, more than a window's title bar

ChildProcess::Options gstreamer(const QRect &area)
{
    return {.program = u"gst-launch-1.0"_s,
            .arguments = u"-q ximagesrc startx=%1 starty=%2 endx=%3 endy=%4 use-damage=0 "
                         "show-pointer=true ! video/x-raw,framerate=60/1 ! "
                         "ximagesink sync=false"_s.arg(area.left())
                             .arg(area.top())
                             .arg(area.right())
                             .arg(area.bottom())
                             .split(u' ')};
}

ChildProcess::Options ffplay(const QString &displayName, const StageLayout &layout)
{
    return {.program = u"ffplay"_s,
            .arguments
            = u"-hide_banner -loglevel error -window_title Player -noborder -left %1 -top %2 -an "
              "-fflags nobuffer -flags low_delay -framedrop -probesize 32 -analyzeduration 0 "
              "-sync ext -f x11grab -framerate 60 -video_size %3x%4 -draw_mouse 1 -i %5+%6,%7"_s
                  .arg(layout.player.x())
                  .arg(layout.player.y())
                  .arg(layout.area.width())
                  .arg(layout.area.height())
                  .arg(displayName)
                  .arg(layout.area.x())
                  .arg(layout.area.y())
                  .split(u' ')};
}

/** Without a dialog about another instance or an update. */
ChildProcess::Options obs()
{
    return {.program = u"obs"_s, .arguments = {u"--multi"_s, u"--disable-updater"_s}};
}

std::optional<xcb_window_t> windowTitled(const XClient &client, const QString &beginning)
{
    const auto windows = listWindows(client, Listing::Picker);
    const auto found = std::ranges::find_if(windows, [&](xcb_window_t window) {
        return titleOf(client, window).startsWith(beginning);
    });
    return found == windows.end() ? std::nullopt : std::optional(*found);
}

/** Asks again and again, because a program that has just started moves its windows itself. */
xcb_window_t awaitWindow(const MeasuredDesktop &desktop, ChildProcess &process,
                         const QString &beginning, const QRect &place)
{
    std::optional<xcb_window_t> window;
    const auto isThere = [&] {
        window = windowTitled(desktop.client, beginning);
        const auto seen = window ? geometryOf(desktop.client, *window) : std::nullopt;
        if (!seen) {
            return !process.isRunning();
        }
        if (seen->size() == place.size()
            && (seen->topLeft() - place.topLeft()).manhattanLength() < gap) {
            return true;
        }
        setGeometry(desktop.client, *window, place);
        desktop.measurement.rest(std::chrono::milliseconds(100));
        return false;
    };
    if (!waitFor(isThere, windowLimit) || !window) {
        throw Failure(u"its window \"%1\" does not come to its place; it said: %2"_s.arg(
            beginning, QString::fromLocal8Bit(process.output().right(300)).simplified()));
    }
    return *window;
}

} // namespace

QString toolName(Tool tool)
{
    static const std::array names{u"Glimmerpane"_s, u"GStreamer"_s, u"ffplay"_s, u"OBS Studio"_s};
    return names[static_cast<size_t>(tool)];
}

QString toolTitle(Tool tool)
{
    static const std::array titles{u"Glimmerpane - Output"_s, u"gst-launch"_s, u"Player"_s,
                                   u"Windowed Projector"_s};
    return titles[static_cast<size_t>(tool)];
}

StageLayout StageLayout::of(QSize areaSize)
{
    const QRect area(QPoint(gap, gap), areaSize);
    const QRect player = area.translated(0, areaSize.height() + gap);
    const QRect beside({area.right() + gap, gap}, obsSettings::mainWindowSize);
    return {.area = area,
            .player = player,
            .beside = beside,
            .screen = {beside.right() + gap, std::max(player.bottom(), beside.bottom()) + 2 * gap}};
}

RunningTool startTool(MeasuredDesktop &desktop, Tool tool, const StageLayout &layout)
{
    constexpr QPoint inside(40, 40);
    desktop.input.moveTo(layout.area.bottomRight() - inside);
    if (tool == Tool::Glimmerpane) {
        desktop.startWith(layout.area, layout.beside.topLeft(), true);
        return {.process = {},
                .view
                = required(CapturedWindow::open(desktop.client, desktop.outputWindow().value())),
                .source = PictureOf::Composite,
                .pid = desktop.program.pid()};
    }
    auto command = tool == Tool::GStreamer ? gstreamer(layout.area)
        : tool == Tool::Ffplay             ? ffplay(desktop.server.displayName(), layout)
                                           : obs();
    command.environment
        = tool == Tool::Obs ? obsSettings::write(desktop, layout.area) : desktop.environment;
    auto process = required(ChildProcess::start(command));
    const auto window = awaitWindow(desktop, process, toolTitle(tool), layout.player);
    if (tool == Tool::Obs) {
        awaitWindow(desktop, process, u"OBS"_s, layout.beside);
    }
    const pid_t pid = process.pid();
    return {.process = std::move(process),
            .view = required(CapturedWindow::open(desktop.client, window, PictureOf::Screen)),
            .pid = pid};
}

} // namespace glimmerpane::bench
