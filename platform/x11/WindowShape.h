// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>

#include <xcb/xcb.h>

namespace glimmerpane::x11
{

/** Limits a Qt window to a region of its pixels; does nothing if the X server lacks XFixes. */
void setWindowShape(xcb_window_t window, const QRegion &pixels);

} // namespace glimmerpane::x11
