// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/CursorTheme.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/OverlayPainter.h"
#include "platform/x11/OverlayStacking.h"
#include "services/Error.h"

#include <QTimer>

#include <array>
#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/**
 * An override-redirect window on a connection of its own, so that killing it does not end the
 * program.
 *
 * What it shows is its background pixmap: the server itself paints that in the same step in which
 * the window changes its size or comes to light, so no state in between can be seen. A window that
 * only moves takes its marks with it; then nothing but the glass between them is renewed.
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
    OverlayWindowX11(Connection connection, const Extensions &extensions,
                     const RenderFormats &formats, const FrostedGlass &glass);
    std::expected<void, Error> createWindow();
    void describe(const QString &title);
    void watchDesktop();

    OverlayScene sceneOf(QRect frame, const OverlayPicture &picture) const;
    void configure(QRect place) const;
    void replaceBackground(const OverlayScene &scene);
    void renewSoon();
    void renewGlass();

    void handle(const xcb_generic_event_t &event);
    std::optional<PointerEvent> pointerEvent(const xcb_generic_event_t &event);
    void deliver(const PointerEvent &event);
    void deliverMotion();
    void stayOnTop();
    void restack();
    void lookForAlert(bool mayBeNew);
    void checkDisplays();
    void lose();

    const Connection connection_;
    const Extensions extensions_;
    OverlayPainter painter_;
    CursorTheme cursors_;
    OverlayStacking stacking_;
    Colormap colormap_;
    Window window_;
    std::optional<OverlayScene> shown_; ///< while the window is mapped
    std::array<Canvas, 2> backgrounds_; ///< the first is the window's; as large as ever needed
    bool isBackgroundOld_ = false; ///< its glass is that of a place which the window has left
    bool isPressed_ = false;
    bool hasAlert_ = false; ///< the program, when last looked
    std::optional<PointerEvent> motion_; ///< the latest one, until all that has arrived is read
    std::vector<xcb_atom_t> restackSigns_; ///< properties of the root
    QTimer raiseTimer_;
    QTimer renewTimer_;
    EventReader events_;
};

} // namespace glimmerpane::x11
