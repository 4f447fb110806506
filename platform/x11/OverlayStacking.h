// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QRect>
#include <QRegion>

namespace glimmerpane::x11
{

/** Keeps an overlay above every other window but the alert that the program shows. */
class OverlayStacking
{
public:
    /** The connection must outlive the object. */
    explicit OverlayStacking(const Connection &connection);

    /** Whether there is one, which has to be answered before anything else. */
    static bool hasAlert();

    /** Waits for the server while there is an alert. */
    void restack(xcb_window_t overlay) const;

    /**
     * Gives the overlay a hole where the alert is, or takes it away. Mutter puts the overlay back
     * above all that it manages, and KWin draws it there. `place` is the overlay's, in root pixels.
     * Waits for the server while there is an alert.
     */
    void yield(xcb_window_t overlay, QRect place);

private:
    QRegion alertShape() const;

    const Connection &connection_;
    bool hasHole_ = false;
};

} // namespace glimmerpane::x11
