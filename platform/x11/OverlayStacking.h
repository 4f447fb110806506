// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QRect>
#include <QRegion>

namespace glimmerpane::x11
{

/** Whether the window manager may have restacked its windows; the root's PropertyChange events. */
bool tellsOfRestacking(const Connection &connection, const xcb_property_notify_event_t &event);

/** Keeps an overlay above all other windows except the program's own alert. */
class OverlayStacking
{
public:
    /** The connection must outlive this object. */
    explicit OverlayStacking(const Connection &connection);

    /** Whether an alert is open, which must be answered first. */
    static bool hasAlert();

    /** Raises the overlay, or keeps it below an open alert. Waits for the server then. */
    void restack(xcb_window_t overlay) const;

    /**
     * Cuts a hole into the overlay where the alert is, or closes it again: Mutter puts the overlay
     * back above all managed windows, and KWin draws it there. `place` is the overlay's, in root
     * pixels. Waits for the server while an alert is open.
     */
    void yield(xcb_window_t overlay, QRect place);

private:
    QRegion alertShape() const;

    const Connection &connection_;
    bool hasHole_ = false;
};

} // namespace glimmerpane::x11
