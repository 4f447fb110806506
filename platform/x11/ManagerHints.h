// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QPoint>
#include <QSize>

#include <optional>
#include <span>

namespace glimmerpane::x11
{

/** What an output window tells the window manager, besides what describeWindow() says. */
struct ManagerHints {
    QSize size; ///< which it keeps, pixels
    std::optional<QPoint> place; ///< root pixels; otherwise the manager finds one
    std::span<const AtomName> states; ///< _NET_WM_STATE_...
};

/** Also that it has no decorations, takes no input, and is on every desktop. */
void setManagerHints(const Connection &connection, xcb_window_t window, const ManagerHints &hints);

/**
 * Asks the manager to move the window to this place, root pixels. KWin and Fluxbox comply, though
 * not with the window's own requests.
 */
void requestPlace(const Connection &connection, xcb_window_t window, QPoint place);

} // namespace glimmerpane::x11
