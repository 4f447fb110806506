// SPDX-License-Identifier: MIT
#include "platform/x11/AreaMarksX11.h"

#include "platform/x11/Coordinates.h"
#include "platform/x11/Events.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/WindowGeometry.h"
#include "platform/x11/WindowProperties.h"
#include "platform/x11/WindowShape.h"
#include "platform/x11/Xwayland.h"

#include <array>
#include <chrono>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

using namespace std::chrono_literals;

/** In the root's visual, which has 8 bits for each colour everywhere that this program runs. */
std::uint32_t pixelOf(const QColor &color)
{
    return color.rgb() & 0xffffff;
}

} // namespace

std::expected<std::unique_ptr<AreaMarks>, Error> AreaMarksX11::create()
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    return std::unique_ptr<AreaMarks>(new AreaMarksX11(std::move(*opened)));
}

AreaMarksX11::AreaMarksX11(ExtendedConnection opened)
    : connection_(std::move(opened.connection))
    , extensions_(opened.extensions)
    , cursors_(connection_)
    , stacking_(connection_)
    , isXwayland_(isXwayland(connection_))
    , events_(connection_)
{
    events_.onEvent = [this](const xcb_generic_event_t &event) { handle(event); };
    raiseTimer_.setSingleShot(true);
    QObject::connect(&raiseTimer_, &QTimer::timeout, &events_, [this] { restack(); });
    watchMonitors(connection_, XCB_EVENT_MASK_PROPERTY_CHANGE);
    handle_ = makeWindow(connection_.root());
    resetWindowShape(connection_.get(), handle_.window.get(), XCB_SHAPE_SK_INPUT);
    const std::array<std::uint32_t, 2> values{XCB_EVENT_MASK_BUTTON_PRESS
                                                  | XCB_EVENT_MASK_BUTTON_RELEASE
                                                  | XCB_EVENT_MASK_BUTTON_1_MOTION,
                                              cursors_.cursor(Qt::OpenHandCursor)};
    xcb_change_window_attributes(connection_.get(), handle_.window.get(),
                                 XCB_CW_EVENT_MASK | XCB_CW_CURSOR, values.data());
    events_.flush();
}

/** One that takes no pointer input. */
AreaMarksX11::MarkWindow AreaMarksX11::makeWindow(xcb_window_t parent) const
{
    const auto id = connection_.newId();
    const std::array<std::uint32_t, 2> values{0, 1};
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, id, parent, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    if (parent == connection_.root()) {
        // Of what it does not manage, metacity leaves only this kind without a shadow, which would
        // reach into the area.
        describeOverlay(connection_, id, QStringLiteral("Glimmerpane - Frame"),
                        "_NET_WM_WINDOW_TYPE_DND");
        setWindowShape(connection_.get(), id, XCB_SHAPE_SK_INPUT, {});
    }
    return {.window = Window(connection_.get(), id), .isShown = false, .mark = {}};
}

void AreaMarksX11::present(const MarksPicture &picture)
{
    show(bars_, picture.bars, connection_.root());
    presentHandle(picture);
    if (std::exchange(isAnyNew_, false)) {
        restack();
    }
    // Any reply shows that the server has carried out what came before it.
    auto *const connection = connection_.get();
    const Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    events_.flush();
}

void AreaMarksX11::presentHandle(const MarksPicture &picture)
{
    if (isPressed_ && isXwayland_) {
        // Xwayland adds its own idea of the window's place to the compositor's idea of the
        // pointer's place in it; they differ while the window moves.
        return;
    }
    if (picture.handle.isEmpty() && !isPressed_) {
        hide(handle_);
        return;
    }
    Mark ground{.place = picture.handle, .color = {}};
    if (picture.handle.isEmpty()) {
        // Unmapping it would end the server's grab; there it is on no display.
        ground.place = handle_.mark.place;
        ground.place.moveBottomRight({-1, -1});
    } else {
        show(grip_, picture.grip, handle_.window.get());
    }
    show(handle_, ground);
}

void AreaMarksX11::show(std::vector<MarkWindow> &windows, const std::vector<Mark> &marks,
                        xcb_window_t parent)
{
    while (windows.size() < marks.size()) {
        windows.push_back(makeWindow(parent));
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (i < marks.size()) {
            isAnyNew_ = isAnyNew_ || !windows[i].isShown;
            show(windows[i], marks[i]);
        } else {
            hide(windows[i]);
        }
    }
}

void AreaMarksX11::show(MarkWindow &window, const Mark &mark) const
{
    auto *const connection = connection_.get();
    const auto id = window.window.get();
    if (mark.color != window.mark.color) {
        const std::uint32_t pixel = pixelOf(mark.color);
        xcb_change_window_attributes(connection, id, XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(connection, 0, id, 0, 0, 0, 0);
    }
    if (mark.place != window.mark.place) {
        setGeometry(connection_, id, mark.place);
    }
    window.mark = mark;
    if (!std::exchange(window.isShown, true)) {
        xcb_map_window(connection, id);
    }
}

void AreaMarksX11::hide(MarkWindow &window) const
{
    if (std::exchange(window.isShown, false)) {
        xcb_unmap_window(connection_.get(), window.window.get());
    }
}

void AreaMarksX11::hide()
{
    isPressed_ = false;
    raiseTimer_.stop();
    present({});
}

void AreaMarksX11::handle(const xcb_generic_event_t &event)
{
    if (tellsOfMonitors(event, connection_, extensions_)) {
        if (onDisplaysChanged) {
            onDisplaysChanged();
        }
    } else if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
        if (tellsOfRestacking(connection_, eventAs<xcb_property_notify_event_t>(event))
            && !raiseTimer_.isActive()) {
            restack();
            raiseTimer_.start(50ms); // some managers notify before they restack
        }
    } else {
        tell(event);
    }
}

void AreaMarksX11::tell(const xcb_generic_event_t &event)
{
    using Kind = PointerEvent::Kind;
    const int type = typeOf(event);
    if (type < XCB_BUTTON_PRESS || type > XCB_MOTION_NOTIFY) {
        return;
    }
    // These events share their first fields.
    const auto &pointer = eventAs<xcb_button_press_event_t>(event);
    if (type != XCB_MOTION_NOTIFY && pointer.detail != XCB_BUTTON_INDEX_1) {
        return;
    }
    const bool wasPressed
        = std::exchange(isPressed_,
                        type == XCB_BUTTON_PRESS ? !OverlayStacking::hasAlert()
                                                 : isPressed_ && type == XCB_MOTION_NOTIFY);
    if ((wasPressed || isPressed_) && onHandle) {
        onHandle({.kind = !wasPressed ? Kind::Press
                      : isPressed_    ? Kind::Drag
                                      : Kind::Release,
                  .position = {pointer.root_x, pointer.root_y}});
    }
}

void AreaMarksX11::restack()
{
    for (const MarkWindow &bar : bars_) {
        if (bar.isShown) {
            stacking_.restack(bar.window.get());
        }
    }
    if (handle_.isShown) {
        stacking_.restack(handle_.window.get());
    }
    events_.flush();
}

} // namespace glimmerpane::x11
