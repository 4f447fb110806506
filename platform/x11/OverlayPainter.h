// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/FrostedBackdrop.h"
#include "platform/x11/Render.h"

#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/** An overlay's position and content. */
struct OverlayScene {
    QRect window; ///< root pixels
    OverlayPicture picture;
    QPoint pictureOrigin; ///< in the window
};

/**
 * Draws overlays inside the X server. If a compositor blurs behind windows, the glass is
 * translucent; otherwise it is a frosted picture of what lies below, updated on request.
 */
class OverlayPainter
{
public:
    OverlayPainter(const Connection &connection, const RenderFormats &formats,
                   const FrostedGlass &glass);

    /**
     * Call once, before the window is first painted. Creates the picture of what lies below it on
     * the main display and at `area` (root pixels), if one is needed. SubstructureNotify and
     * PropertyChange must have been selected on the root.
     */
    void takeBackdrop(const Extensions &extensions, xcb_window_t window, QRect area);

    /** Must be given every event of the connection. */
    void note(const xcb_generic_event_t &event);

    bool isTranslucent() const { return visual_ != connection_.screen().root_visual; }
    std::uint8_t depth() const { return depth_; }
    xcb_visualid_t visual() const { return visual_; }

    Canvas makeCanvas(QSize size) const;

    /** Draws the whole scene. */
    void paint(const Canvas &canvas, const OverlayScene &scene);

    /** Whether paintGlass() is enough to move a window from one scene to the other. */
    bool isOnlyMoved(const OverlayScene &from, const OverlayScene &to) const;

    /** Draws only the glass, around what is drawn on it. */
    void paintGlass(xcb_window_t window, const OverlayScene &scene)
    {
        paintGlass(window, scene, scene.window);
    }

    /** Whether the screen behind the glass may have changed. */
    bool mayBeOld(const OverlayScene &scene) const;

    /** Redraws the glass where it has changed; false if it has not. Waits for the server. */
    bool renewGlass(xcb_window_t window, const OverlayScene &scene);

private:
    struct Panel {
        qint64 key = 0; ///< of the image
        Canvas image;
        Canvas onGlass; ///< for combining the two
    };

    void paintGlass(xcb_window_t window, const OverlayScene &scene, QRect part);
    void copyGlass(QRect rootRectangle, std::uint32_t drawable, QPoint place) const;
    void drawPanel(const Canvas &canvas, const QImage &panel, QPoint place);
    void fill(const Canvas &canvas, const std::vector<QRect> &rectangles,
              const xcb_render_color_t &color) const;

    const Connection &connection_;
    const RenderFormats formats_;
    std::uint8_t depth_;
    xcb_visualid_t visual_;
    xcb_render_pictformat_t format_;
    xcb_render_color_t glassColor_; ///< used without a backdrop
    GraphicsContext graphics_;
    const FrostedGlass glass_;
    std::optional<FrostedBackdrop> backdrop_; ///< null if the glass is translucent
    Panel panel_;
};

} // namespace glimmerpane::x11
