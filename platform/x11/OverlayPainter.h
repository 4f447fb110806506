// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/FrostedBackdrop.h"
#include "platform/x11/Render.h"

#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/** What an overlay's window shows, and where. */
struct OverlayScene {
    QRect window; ///< root pixels
    OverlayPicture picture;
    QPoint pictureOrigin; ///< in the window
};

/**
 * Draws overlays inside the X server. Where a compositor offers to blur what is behind a window,
 * the glass is translucent; else it is a frosted picture of what lies below, renewed when asked.
 */
class OverlayPainter
{
public:
    OverlayPainter(const Connection &connection, const RenderFormats &formats,
                   const FrostedGlass &glass);

    /**
     * To be called once, before the window is first painted: makes the picture of what lies below
     * it on the main display and at `area` (root pixels), where one is needed. The root's
     * SubstructureNotify and PropertyChange must have been selected.
     */
    void takeBackdrop(const Extensions &extensions, xcb_window_t window, QRect area);

    /** Every event of the connection is to come here. */
    void note(const xcb_generic_event_t &event);

    bool isTranslucent() const { return visual_ != connection_.screen().root_visual; }
    std::uint8_t depth() const { return depth_; }
    xcb_visualid_t visual() const { return visual_; }

    Canvas makeCanvas(QSize size) const;

    /** Draws all of the scene. */
    void paint(const Canvas &canvas, const OverlayScene &scene);

    /** Whether a window that shows the one scene can be moved to the other one by paintGlass(). */
    bool isOnlyMoved(const OverlayScene &from, const OverlayScene &to) const;

    /** Draws the glass between what is drawn upon it. */
    void paintGlass(xcb_window_t window, const OverlayScene &scene)
    {
        paintGlass(window, scene, scene.window);
    }

    /** Whether the screen behind the glass may have changed. */
    bool mayBeOld(const OverlayScene &scene) const;

    /** Draws the glass where it has; false where nothing had. Waits for the server. */
    bool renewGlass(xcb_window_t window, const OverlayScene &scene);

private:
    struct Panel {
        qint64 key = 0; ///< of the image
        Canvas image;
        Canvas onGlass; ///< to put the two together in
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
    xcb_render_color_t glassColor_; ///< where there is no backdrop
    GraphicsContext graphics_;
    const FrostedGlass glass_;
    std::optional<FrostedBackdrop> backdrop_; ///< none where the glass is translucent
    Panel panel_;
};

} // namespace glimmerpane::x11
