// SPDX-License-Identifier: MIT
#include "platform/x11/OutlyingWindowX11.h"

#include "platform/Log.h"
#include "platform/x11/Compositing.h"
#include "platform/x11/Events.h"
#include "platform/x11/Regions.h"
#include "platform/x11/Render.h"
#include "platform/x11/WindowProperties.h"

#include <xcb/xfixes.h>

#include <array>
#include <cstdint>
#include <utility>

namespace glimmerpane::x11
{

std::expected<std::unique_ptr<OutputWindow>, Error> OutlyingWindowX11::create(const QString &title,
                                                                              QSize size,
                                                                              ViewerWatcher watcher)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    auto window = std::make_unique<OutlyingWindowX11>(std::move(*opened), size, std::move(watcher));
    if (auto created = window->prepare(title, {}); !created) {
        return std::unexpected(created.error());
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(window->connection_.get(), window->connection_.root(),
                                 XCB_CW_EVENT_MASK, &events);
    window->createDot();
    return window;
}

OutlyingWindowX11::OutlyingWindowX11(ExtendedConnection opened, QSize size, ViewerWatcher watcher)
    : ParkedWindowX11(std::move(opened), {QPoint(), size}, std::move(watcher))
{
}

void OutlyingWindowX11::createDot()
{
    const auto &screen = connection_.screen();
    const xcb_visualid_t visual = translucentVisual(screen);
    const auto colormap = connection_.newId();
    xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colormap, screen.root, visual);
    colormap_ = Colormap(connection_, colormap);
    const auto dot = connection_.newId();
    const std::array<std::uint32_t, 4> values{0, 0, 1, colormap};
    xcb_create_window(connection_.get(), 32, dot, screen.root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT
                          | XCB_CW_COLORMAP,
                      values.data());
    dot_ = Window(connection_, dot);
    xcb_xfixes_set_window_shape_region(connection_.get(), dot, XCB_SHAPE_SK_INPUT, 0, 0,
                                       makeRegion(connection_.get()).get());
}

void OutlyingWindowX11::orderFront()
{
    isLow_ = false;
    xcb_map_window(connection_.get(), dot_.get());
    ParkedWindowX11::orderFront();
}

void OutlyingWindowX11::orderOut()
{
    xcb_unmap_window(connection_.get(), dot_.get());
    ParkedWindowX11::orderOut();
}

/** Left of and above all monitors, which begin at the root's corner. */
QPoint OutlyingWindowX11::choosePlace() const
{
    constexpr int gap = 100; // pixels; a window that touches a monitor might count as on it
    return {-size_.width() - gap, -size_.height() - gap};
}

void OutlyingWindowX11::move(QPoint place)
{
    // Mutter reads the type when it hears of it, so it must stay until the window has moved.
    setWindowType(connection_, window_.get(), "_NET_WM_WINDOW_TYPE_DOCK");
    setFrameOrigin(place);
}

/** Only ordinary windows are offered to viewers. */
void OutlyingWindowX11::settled()
{
    setWindowType(connection_, window_.get(), "_NET_WM_WINDOW_TYPE_NORMAL");
    lower();
}

/** So that it is on top only when the user has chosen it. */
void OutlyingWindowX11::lower()
{
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(connection_.get(), window_.get(), XCB_CONFIG_WINDOW_STACK_MODE, &below);
}

/** Even what is drawn was at times not enough (4 of 160 viewers) until the screen was painted. */
void OutlyingWindowX11::touchMore()
{
    xcb_clear_area(connection_.get(), 0, dot_.get(), 0, 0, 1, 1);
}

void OutlyingWindowX11::handle(const xcb_generic_event_t &event)
{
    if (typeOf(event) == XCB_PROPERTY_NOTIFY
        && eventAs<xcb_property_notify_event_t>(event).window == connection_.root()) {
        if (eventAs<xcb_property_notify_event_t>(event).atom
            == connection_.atom("_NET_CLIENT_LIST_STACKING")) {
            followStack();
        }
        return;
    }
    ParkedWindowX11::handle(event);
}

/** EWMH: the managed windows, the topmost one last. */
void OutlyingWindowX11::followStack()
{
    constexpr std::uint32_t most = 4096; // windows
    events_.await<xcb_get_property_reply_t>(
        xcb_get_property(connection_.get(), 0, connection_.root(),
                         connection_.atom("_NET_CLIENT_LIST_STACKING"), XCB_ATOM_WINDOW, 0, most),
        [this](const Reply<xcb_get_property_reply_t> &reply) {
            const int length = reply
                ? xcb_get_property_value_length(reply.get()) / int(sizeof(xcb_window_t))
                : 0;
            if (length > 0) {
                const auto *const windows
                    = static_cast<const xcb_window_t *>(xcb_get_property_value(reply.get()));
                follow(windows[length - 1] == window_.get());
            }
        });
    events_.flush();
}

void OutlyingWindowX11::follow(bool isOnTop)
{
    if (!isVisible_ || !isSettled()) {
        return;
    }
    if (!isOnTop) {
        isLow_ = true;
    } else if (std::exchange(isLow_, false)) {
        lower();
        events_.flush();
        qCInfo(platformLog, "the user has activated the output window");
        if (onActivated) {
            onActivated();
        }
    }
}

} // namespace glimmerpane::x11
