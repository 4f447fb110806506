// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>

#include <xcb/xcb.h>

namespace glimmerpane::x11
{

/** Cuts a window of Qt's to a region of its pixels; not where the X server lacks XFixes. */
void setWindowShape(xcb_window_t window, const QRegion &pixels);

} // namespace glimmerpane::x11
