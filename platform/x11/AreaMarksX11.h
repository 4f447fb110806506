// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AreaMarks.h"
#include "platform/x11/Connection.h"
#include "platform/x11/CursorTheme.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/OverlayStacking.h"
#include "platform/x11/ServerId.h"

#include <QTimer>

namespace glimmerpane::x11
{

/**
 * Marks that are windows of one colour each, which the server paints by itself in the step in which
 * it moves or uncovers them. Unlike a single window with a hole, they cost no memory under a
 * compositor, and need none that knows of holes.
 */
class AreaMarksX11 : public AreaMarks
{
public:
    static std::expected<std::unique_ptr<AreaMarks>, Error> create();

    void present(const MarksPicture &picture) override;
    void hide() override;

private:
    struct MarkWindow {
        Window window;
        bool isShown = false;
        Mark mark;
    };

    explicit AreaMarksX11(ExtendedConnection opened);
    MarkWindow makeWindow(xcb_window_t parent) const;
    void show(MarkWindow &window, const Mark &mark) const;
    void hide(MarkWindow &window) const;
    void show(std::vector<MarkWindow> &windows, const std::vector<Mark> &marks,
              xcb_window_t parent);
    void presentHandle(const MarksPicture &picture);
    void handle(const xcb_generic_event_t &event);
    void tell(const xcb_generic_event_t &event);
    void restack();

    const Connection connection_;
    const Extensions extensions_;
    CursorTheme cursors_;
    OverlayStacking stacking_;
    const bool isXwayland_;
    std::vector<MarkWindow> bars_; ///< they are reused, and never become fewer
    MarkWindow handle_;
    std::vector<MarkWindow> grip_; ///< in the handle
    bool isPressed_ = false; ///< the handle
    bool isAnyNew_ = false; ///< a window has appeared, and may be below others
    QTimer raiseTimer_;
    EventReader events_;
};

} // namespace glimmerpane::x11
