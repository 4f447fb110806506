// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/CursorTheme.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/OverlayLabelX11.h"
#include "platform/x11/OverlayPainter.h"
#include "platform/x11/OverlayStacking.h"
#include "platform/x11/PointerInbox.h"
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
 * An override-redirect window on its own connection, so that killing its client does not end the
 * program.
 *
 * Its content is its background pixmap: the server paints that in the same step in which the window
 * is resized or uncovered, so no intermediate state is visible. When the window only moves, its
 * marks move with it, and just the glass between them is redrawn.
 */
class OverlayWindowX11 : public OverlayWindow
{
public:
    static std::expected<std::unique_ptr<OverlayWindow>, Error> create(const QString &title,
                                                                       QRect area,
                                                                       const FrostedGlass &glass);

    void present(QRect frame, const OverlayPicture &picture, const OverlayLabel &label) override;
    void setCursor(Qt::CursorShape shape) override;
    void hide() override;

private:
    OverlayWindowX11(Connection connection, const Extensions &extensions,
                     const RenderFormats &formats, const FrostedGlass &glass);
    std::expected<void, Error> createWindow();
    void describe(const QString &title);
    void watchDesktop();

    OverlayScene sceneOf(QRect frame, const OverlayPicture &picture) const;
    void replaceBackground(const OverlayScene &scene);
    void renewSoon();
    void renewGlass();

    void handle(const xcb_generic_event_t &event);
    std::optional<PointerEvent> pointerEvent(const xcb_generic_event_t &event);
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
    OverlayLabelX11 label_;
    std::optional<OverlayScene> shown_; ///< set while the window is mapped
    std::array<Canvas, 2> backgrounds_; ///< the first is the window's; they never shrink
    bool isBackgroundOld_ = false; ///< its glass is from a previous position
    bool isPressed_ = false;
    bool hasAlert_ = false; ///< as of the last check
    PointerInbox inbox_{*this};
    QTimer raiseTimer_;
    QTimer renewTimer_;
    EventReader events_;
};

} // namespace glimmerpane::x11
