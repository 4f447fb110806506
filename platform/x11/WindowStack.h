// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QPoint>
#include <QRegion>

#include <vector>

namespace glimmerpane::x11
{

/** A top-level window that is at least partly visible. */
struct StackedWindow {
    xcb_window_t id = 0;
    QPoint origin; ///< root pixels
    QRegion shape; ///< root pixels
    xcb_visualid_t visual = 0;
    bool hasAlpha = false; ///< and a compositor honours it
    double opacity = 1; ///< above 0

    bool isOpaque() const { return !hasAlpha && opacity >= 1; }

    friend bool operator==(const StackedWindow &, const StackedWindow &) = default;
};

/** The windows below this top-level one, or all, from bottom to top. Waits for the server. */
std::vector<StackedWindow> windowsBelow(const Connection &connection, xcb_window_t top);

/**
 * The top-level window that contains this one: itself, or the manager's frame around it. 0 if it is
 * gone. Waits for the server.
 */
xcb_window_t topLevelOf(const Connection &connection, xcb_window_t window);

} // namespace glimmerpane::x11
