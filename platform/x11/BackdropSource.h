// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/RootBackground.h"
#include "platform/x11/WindowStack.h"

#include <QRegion>

#include <map>
#include <vector>

namespace glimmerpane::x11
{

/**
 * What the screen would show without a given top-level window and everything above it: the root's
 * background and the windows below. Those are redirected automatically, so that their pixels also
 * exist where they are covered. Follows the connection's events; sends no requests while nothing
 * changes. Windows may vanish at any time; the server's errors about that are ignored.
 */
class BackdropSource
{
public:
    /** SubstructureNotify and PropertyChange must have been selected on the root. */
    BackdropSource(const Connection &connection, const Extensions &extensions,
                   const RenderFormats &formats, xcb_window_t top);

    /** Must be given every event of the connection. */
    void note(const xcb_generic_event_t &event);

    /** Whether anything may have changed in this rectangle (root pixels). */
    bool mayHaveChanged(QRect area) const;

    /** What has changed in this rectangle since the last call. Waits for the server. */
    QRegion takeChanges(QRect area);

    /** Draws this entire rectangle into the top-left corner of a canvas. */
    void draw(const Canvas &canvas, QRect area) const;

private:
    struct Layer {
        StackedWindow window;
        QRegion visible; ///< the part not covered by opaque windows above; root pixels
        Picture picture;
        Damage damage;
        bool isDamaged = false;
    };

    void noteStructure(const xcb_generic_event_t &event);
    void redirect(xcb_window_t window);
    void readStack();
    Layer layerOf(const StackedWindow &window);
    void findVisible();
    void collectDamage(QRect area);

    const Connection &connection_;
    const std::uint8_t damageEvent_;
    const xcb_window_t top_;
    const std::map<xcb_visualid_t, xcb_render_pictformat_t> formats_;
    RootBackground background_;
    QRegion rootVisible_;
    std::map<xcb_window_t, Redirection> redirections_;
    std::vector<Layer> layers_; ///< the bottommost first
    xcb_window_t belowTop_ = 0; ///< the window directly below
    bool isStackOld_ = false;
    bool isBackgroundOld_ = true;
    QRegion changes_;
};

} // namespace glimmerpane::x11
