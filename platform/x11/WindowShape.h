// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>

#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace glimmerpane::x11
{

/** Limits a window to a region of its pixels. The connection must have announced XFixes. */
void setWindowShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind,
                    const QRegion &pixels);

/** Ends such a limit. */
void resetWindowShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind);

/** Limits a Qt window to a region of its pixels; does nothing if the X server lacks XFixes. */
void setWindowShape(xcb_window_t window, const QRegion &pixels);

} // namespace glimmerpane::x11
