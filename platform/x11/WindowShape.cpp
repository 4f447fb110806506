// SPDX-License-Identifier: MIT
#include "platform/x11/WindowShape.h"

#include "platform/x11/ServerId.h"

#include <QGuiApplication>

#include <xcb/xfixes.h>

#include <algorithm>
#include <vector>

namespace glimmerpane::x11
{

namespace
{

xcb_rectangle_t rectangleOf(const QRect &rect)
{
    return {.x = static_cast<std::int16_t>(rect.x()),
            .y = static_cast<std::int16_t>(rect.y()),
            .width = static_cast<std::uint16_t>(rect.width()),
            .height = static_cast<std::uint16_t>(rect.height())};
}

/** Null if Qt does not use an X server, or one without XFixes. */
xcb_connection_t *qtConnection()
{
    const auto *const qt = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const auto *const xfixes
        = qt ? xcb_get_extension_data(qt->connection(), &xcb_xfixes_id) : nullptr;
    return xfixes && xfixes->present != 0 ? qt->connection() : nullptr;
}

} // namespace

void setWindowShape(xcb_window_t window, const QRegion &pixels)
{
    // On a separate connection, the request could overtake the window's creation.
    xcb_connection_t *const connection = qtConnection();
    if (connection == nullptr) {
        return;
    }
    std::vector<xcb_rectangle_t> rectangles;
    std::ranges::transform(pixels, std::back_inserter(rectangles), rectangleOf);
    const auto id = xcb_generate_id(connection);
    xcb_xfixes_create_region(connection, id, static_cast<std::uint32_t>(rectangles.size()),
                             rectangles.data());
    const Region region(connection, id);
    xcb_xfixes_set_window_shape_region(connection, window, XCB_SHAPE_SK_BOUNDING, 0, 0,
                                       region.get());
}

} // namespace glimmerpane::x11
