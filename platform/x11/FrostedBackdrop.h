// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/BackdropSource.h"
#include "platform/x11/Render.h"

namespace glimmerpane::x11
{

/**
 * Everything below a top-level window, seen through frosted glass. Made inside the server, by
 * requests alone.
 */
class FrostedBackdrop
{
public:
    /**
     * For the rectangle `area` (root pixels). The source's root events must already be selected.
     */
    FrostedBackdrop(const Connection &connection, const Extensions &extensions,
                    const RenderFormats &formats, xcb_window_t top, QRect area,
                    const FrostedGlass &glass);

    QRect area() const { return area_; }
    const Canvas &canvas() const { return canvas_; }

    /** Must be given every event of the connection. */
    void note(const xcb_generic_event_t &event) { source_.note(event); }

    /** Whether the backdrop in this rectangle (root pixels) may be outdated. */
    bool mayBeOld(QRect window) const;

    /** Updates what is outdated there and returns where that was. Waits for the server. */
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
