// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/Connection.h"
#include "platform/x11/CursorTheme.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/PointerInbox.h"
#include "platform/x11/Render.h"
#include "platform/x11/ServerId.h"

#include <QRegion>
#include <QTimer>

#include <memory>
#include <optional>

namespace glimmerpane::x11
{

/**
 * An overlay for compositors that stop telling an X11 window of a drag once the pointer has left
 * it, and whose screen X11 clients cannot read: a window over the whole main display, and over the
 * overlay where that lies elsewhere. It is transparent except for the overlay, whose glass is
 * translucent. While it is shown, no other window gets the pointer. Hidden while an alert of this
 * program is open, because the compositor would show it above that.
 */
class SpanningOverlayX11 : public OverlayWindow
{
public:
    static std::expected<std::unique_ptr<OverlayWindow>, Error> create(const QString &title,
                                                                       const FrostedGlass &glass);

    void present(QRect frame, const OverlayPicture &picture, const OverlayLabel &label) override;
    void setCursor(Qt::CursorShape shape) override;
    void hide() override;

private:
    SpanningOverlayX11(ExtendedConnection opened, const RenderFormats &formats,
                       const FrostedGlass &glass);
    std::expected<void, Error> createWindow(const QString &title);
    void span();
    void paint();
    void paint(const QImage &image, QPoint topLeft);
    QImage content() const;
    void handle(const xcb_generic_event_t &event);
    std::optional<PointerEvent> pointerEvent(const xcb_generic_event_t &event);
    void lookForAlert();
    void stayOnTop();
    void raise();
    void checkDisplays();
    void lose();

    const Connection connection_;
    const Extensions extensions_;
    const RenderFormats formats_;
    const FrostedGlass glass_;
    CursorTheme cursors_;
    GraphicsContext transparent_; ///< fills with nothing
    Colormap colormap_;
    Window window_;
    QRect place_; ///< of the window, root pixels
    QRect frame_; ///< of the overlay, root pixels; empty while it is hidden
    QRegion painted_; ///< where the window is not transparent, root pixels
    OverlayPicture picture_;
    OverlayLabel label_;
    bool isPressed_ = false;
    bool isInside_ = false; ///< the pointer is over the overlay
    bool hasAlert_ = false; ///< so the window is hidden
    PointerInbox inbox_{*this};
    QTimer raiseTimer_;
    EventReader events_;
};

} // namespace glimmerpane::x11
