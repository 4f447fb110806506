// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QRect>

namespace glimmerpane::x11
{

/** Moves and resizes a window in one step; root pixels, or the parent's. */
void setGeometry(const Connection &connection, xcb_window_t window, QRect place);

} // namespace glimmerpane::x11
