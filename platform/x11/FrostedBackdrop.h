// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/BackdropSource.h"
#include "platform/x11/Render.h"

namespace glimmerpane::x11
{

/**
 * What lies below a top-level window, seen through frosted glass. All of it is made inside the
 * server, by requests alone.
 */
class FrostedBackdrop
{
public:
    /** Of the part `area` (root pixels); what it is made of must have been selected already. */
    FrostedBackdrop(const Connection &connection, const Extensions &extensions,
                    const RenderFormats &formats, xcb_window_t top, QRect area,
                    const FrostedGlass &glass);

    QRect area() const { return area_; }
    const Canvas &canvas() const { return canvas_; }

    /** Every event of the connection is to come here. */
    void note(const xcb_generic_event_t &event) { source_.note(event); }

    /** Whether what a window at this place (root pixels) shows may be old. */
    bool mayBeOld(QRect window) const;

    /** Renews what is old there and tells where that was. Waits for the server. */
    QRect renew(QRect window);

private:
    void draw(QRect part);
    QRect reach(QRect place) const;

    const Connection &connection_;
    const RenderFormats formats_;
    const FrostedGlass glass_;
    const QRect area_;
    BackdropSource source_;
    Canvas canvas_; ///< in the screen's format
};

} // namespace glimmerpane::x11
