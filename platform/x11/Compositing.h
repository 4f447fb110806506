// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

namespace glimmerpane::x11
{

/**
 * On the root it says that the compositor blurs behind windows, on a window where it is to do so: a
 * list of rectangles, empty for all of the window. As KWin has it.
 */
inline constexpr const char *blurBehindProperty = "_KDE_NET_WM_BLUR_BEHIND_REGION";

/** EWMH: the selection that whoever composites the screen owns. Waits for the server. */
xcb_atom_t compositingSelection(const Connection &connection);

/** Whether a compositor runs. Waits for the server. */
bool isComposited(const Connection &connection);

/** Whether a compositor runs that blurs behind translucent windows. Waits for the server. */
bool blursBehindWindows(const Connection &connection);

/** The visual of 32 bits with an alpha channel; 0 where there is none. */
xcb_visualid_t translucentVisual(const xcb_screen_t &screen);

} // namespace glimmerpane::x11
