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
 * What the screen would show if a top-level window and all above it were not there: the root's
 * background and the windows below. Each of them is redirected, automatically, so that it also has
 * its pixels where it is covered. Follows the events of the connection; while nothing changes it
 * asks nothing. Windows may vanish at any time; the server's errors about that tell nothing.
 */
class BackdropSource
{
public:
    /** The root's SubstructureNotify and PropertyChange must have been selected. */
    BackdropSource(const Connection &connection, const Extensions &extensions,
                   const RenderFormats &formats, xcb_window_t top);

    /** Every event of the connection is to come here. */
    void note(const xcb_generic_event_t &event);

    /** Whether something may have changed in this rectangle (root pixels). */
    bool mayHaveChanged(QRect area) const;

    /** Where in this rectangle it has, since the last call. Waits for the server. */
    QRegion takeChanges(QRect area);

    /** Draws the whole of this rectangle into the top-left corner of a canvas. */
    void draw(const Canvas &canvas, QRect area) const;

private:
    struct Layer {
        StackedWindow window;
        QRegion visible; ///< what no opaque window above it covers; root pixels
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
    std::vector<Layer> layers_; ///< the lowest first
    xcb_window_t belowTop_ = 0; ///< the window next to it
    bool isStackOld_ = false;
    bool isBackgroundOld_ = true;
    QRegion changes_;
};

} // namespace glimmerpane::x11
