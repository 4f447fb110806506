// SPDX-License-Identifier: MIT
#include "platform/x11/WindowShape.h"

#include "platform/x11/Regions.h"

#include <QGuiApplication>

#include <xcb/xfixes.h>

namespace glimmerpane::x11
{

namespace
{

/** Null if Qt does not use an X server, or one without XFixes. */
xcb_connection_t *qtConnection()
{
    const auto *const qt = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const auto *const xfixes
        = qt ? xcb_get_extension_data(qt->connection(), &xcb_xfixes_id) : nullptr;
    return xfixes && xfixes->present != 0 ? qt->connection() : nullptr;
}

} // namespace

void setWindowShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind,
                    const QRegion &pixels)
{
    const Region region = makeRegion(connection, pixels);
    xcb_xfixes_set_window_shape_region(connection, window, kind, 0, 0, region.get());
}

void resetWindowShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind)
{
    xcb_xfixes_set_window_shape_region(connection, window, kind, 0, 0, XCB_XFIXES_REGION_NONE);
}

void setWindowShape(xcb_window_t window, const QRegion &pixels)
{
    // On a separate connection, the request could overtake the window's creation.
    if (xcb_connection_t *const connection = qtConnection()) {
        setWindowShape(connection, window, XCB_SHAPE_SK_BOUNDING, pixels);
    }
}

} // namespace glimmerpane::x11
