// SPDX-License-Identifier: MIT
#include "platform/x11/OverlayStacking.h"

#include "platform/x11/Render.h"
#include "platform/x11/ServerId.h"
#include "platform/x11/WindowStack.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <array>
#include <vector>

namespace glimmerpane::x11
{

namespace
{

/** 0 if there is none. */
xcb_window_t alertFrame(const Connection &connection)
{
    const QWindow *alert = QGuiApplication::modalWindow();
    return alert ? topLevelOf(connection, static_cast<xcb_window_t>(alert->winId())) : 0;
}

} // namespace

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
            xcb_xfixes_set_window_shape_region(connection_.get(), overlay, XCB_SHAPE_SK_BOUNDING, 0,
                                               0, XCB_NONE);
        }
        hasHole_ = false;
        return;
    }
    std::vector<xcb_rectangle_t> left;
    for (const QRect &part : QRegion(place) - hole) {
        left.push_back({coordinate(part.x() - place.x()), coordinate(part.y() - place.y()),
                        extent(part.width()), extent(part.height())});
    }
    const Region shape(connection_, connection_.newId());
    xcb_xfixes_create_region(connection_.get(), shape.get(),
                             static_cast<std::uint32_t>(left.size()), left.data());
    xcb_xfixes_set_window_shape_region(connection_.get(), overlay, XCB_SHAPE_SK_BOUNDING, 0, 0,
                                       shape.get());
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
