// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

namespace glimmerpane::x11
{

/**
 * KWin's property. On the root, it announces that the compositor blurs behind windows; on a window,
 * it lists the rectangles to blur, empty for the whole window.
 */
inline constexpr AtomName blurBehindProperty = "_KDE_NET_WM_BLUR_BEHIND_REGION";

/** EWMH: the selection owned by the screen's compositor. */
xcb_atom_t compositingSelection(const Connection &connection);

/** Whether a compositor is running. Waits for the server. */
bool isComposited(const Connection &connection);

/** Whether a compositor is running that blurs behind translucent windows. Waits for the server. */
bool blursBehindWindows(const Connection &connection);

/** The 32-bit visual with an alpha channel; 0 if there is none. */
xcb_visualid_t translucentVisual(const xcb_screen_t &screen);

} // namespace glimmerpane::x11
