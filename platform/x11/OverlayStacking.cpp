// SPDX-License-Identifier: MIT
#include "platform/x11/OverlayStacking.h"

#include "platform/x11/WindowShape.h"
#include "platform/x11/WindowStack.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <array>

namespace glimmerpane::x11
{

namespace
{

// EWMH: the window manager changes these properties of the root when it restacks its managed
// windows. Menus and screen lockers are not managed and may well be above an overlay.
constexpr std::array<AtomName, 3> restackSigns{"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST",
                                               "_NET_ACTIVE_WINDOW"};

/** 0 if there is none. */
xcb_window_t alertFrame(const Connection &connection)
{
    const QWindow *alert = QGuiApplication::modalWindow();
    return alert ? topLevelOf(connection, static_cast<xcb_window_t>(alert->winId())) : 0;
}

} // namespace

bool tellsOfRestacking(const Connection &connection, const xcb_property_notify_event_t &event)
{
    return std::ranges::any_of(restackSigns,
                               [&](AtomName sign) { return event.atom == connection.atom(sign); });
}

OverlayStacking::OverlayStacking(const Connection &connection)
    : connection_(connection)
{
}

bool OverlayStacking::hasAlert()
{
    return QGuiApplication::modalWindow() != nullptr;
}

void OverlayStacking::restack(xcb_window_t overlay) const
{
    const xcb_window_t frame = alertFrame(connection_);
    if (frame == 0) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.get(), overlay, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    } else {
        const std::array<std::uint32_t, 2> belowIt{frame, XCB_STACK_MODE_BELOW};
        xcb_configure_window(connection_.get(), overlay,
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             belowIt.data());
    }
}

void OverlayStacking::yield(xcb_window_t overlay, QRect place)
{
    const QRegion hole = alertShape();
    if (hole.isEmpty()) {
        if (hasHole_) {
            resetWindowShape(connection_.get(), overlay, XCB_SHAPE_SK_BOUNDING);
        }
        hasHole_ = false;
        return;
    }
    setWindowShape(connection_.get(), overlay, XCB_SHAPE_SK_BOUNDING,
                   (QRegion(place) - hole).translated(-place.topLeft()));
    hasHole_ = true;
}

/** In root pixels; empty if there is none. */
QRegion OverlayStacking::alertShape() const
{
    if (const xcb_window_t frame = alertFrame(connection_)) {
        const auto windows = windowsBelow(connection_, XCB_WINDOW_NONE);
        const auto found = std::ranges::find(windows, frame, &StackedWindow::id);
        return found != windows.end() ? found->shape : QRegion();
    }
    return {};
}

} // namespace glimmerpane::x11
