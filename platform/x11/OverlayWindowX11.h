// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"
#include "platform/OverlayWindow.h"
#include "platform/x11/CursorTheme.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/Render.h"

#include <QTimer>

#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/**
 * An override-redirect window on a connection of its own, so that killing it does not end the
 * program. Where a compositor offers to blur what is behind, the window is translucent; else it
 * shows a frosted picture of the screen as it was when the window was made.
 *
 * All that it shows is its background pixmap: the server itself paints that in the same step in
 * which the window changes its size or comes to light, so no state in between can be seen.
 */
class OverlayWindowX11 : public OverlayWindow
{
public:
    static std::expected<std::unique_ptr<OverlayWindow>, Error> create(const QString &title,
                                                                       QRect area,
                                                                       const FrostedGlass &glass);

    void present(QRect frame, const OverlayPicture &picture) override;
    void setCursor(Qt::CursorShape shape) override;
    void hide() override;

private:
    /** What kind of pixels the window has. */
    struct PixelKind {
        std::uint8_t depth = 0;
        xcb_visualid_t visual = 0;
        xcb_render_pictformat_t format = 0;
        bool isTranslucent = false;
    };
    struct Backdrop {
        QPoint origin; ///< root pixels
        Canvas screen;
    };
    struct Panel {
        qint64 key = 0; ///< of the image
        Canvas image;
    };

    OverlayWindowX11(Connection connection, Extensions extensions, RenderFormats formats,
                     const FrostedGlass &glass);
    PixelKind choosePixelKind() const;
    std::expected<void, Error> createWindow();
    void describe(const QString &title);
    void watchDesktop();
    void takeBackdrop(QRect area, const FrostedGlass &glass);

    QRect worthShowing(QRect frame) const;
    Canvas draw(QRect shown, QPoint origin, const OverlayPicture &picture);
    void fill(const Canvas &canvas, const std::vector<QRect> &rectangles,
              const xcb_render_color_t &color) const;
    const Canvas &uploaded(const QImage &panel);

    void handle(const xcb_generic_event_t &event);
    std::optional<PointerEvent> pointerEvent(const xcb_generic_event_t &event);
    bool isOfRoot(const xcb_generic_event_t &event) const;
    void deliver(const PointerEvent &event);
    void deliverMotion();
    void stayOnTop();
    void raise();
    void checkDisplays();
    void lose();

    const Connection connection_;
    const Extensions extensions_;
    const RenderFormats formats_;
    const PixelKind pixels_;
    const xcb_render_color_t glassColor_; ///< where there is no backdrop
    CursorTheme cursors_;
    Colormap colormap_;
    Window window_;
    GraphicsContext graphics_;
    std::optional<Backdrop> backdrop_;
    Panel panel_;
    std::optional<QRect> shown_; ///< root pixels, while the window is mapped
    bool isPressed_ = false;
    std::optional<PointerEvent> motion_; ///< the latest one, until all that has arrived is read
    std::vector<xcb_atom_t> restackSigns_; ///< properties of the root
    QTimer raiseTimer_;
    EventReader events_;
};

} // namespace glimmerpane::x11
