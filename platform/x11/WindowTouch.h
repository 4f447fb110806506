// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ViewerWatch.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/Render.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane::x11
{

/**
 * Draws one pixel of a window anew, as it is: a compositor that records a window may give a viewer
 * its picture only once something is drawn. It does so four times a second while a viewer may come
 * or the picture may have changed, and seldom otherwise. Main thread. The window, its connection
 * and the reader must outlive it.
 */
class WindowTouch
{
public:
    /**
     * `viewersChanged` is called when viewers have come or gone, `also` each time before the
     * requests are sent.
     */
    WindowTouch(const Connection &connection, xcb_window_t window, EventReader &events,
                const ViewerWatcher &watcher, std::function<void()> viewersChanged,
                std::function<void()> also = {});

    /** Whether another program gets a picture of the window, of this size; null if nobody tells. */
    std::optional<bool> isViewed(QSize size) const
    {
        return watch_ ? watch_->isViewed(size) : std::nullopt;
    }

    /**
     * Something was drawn, which has to reach the viewers; because the screen has a new picture, or
     * for another reason.
     */
    void noteDrawn(bool isPictureNew);

private:
    using Clock = std::chrono::steady_clock;

    void expectViewer();
    void touch();

    const Connection &connection_;
    const xcb_window_t window_;
    EventReader &events_;
    const std::function<void()> also_;
    const GraphicsContext context_;
    QTimer timer_;
    Clock::time_point expectedUntil_; ///< a viewer may come
    Clock::time_point lastPicture_; ///< when the latest new one was drawn
    Clock::time_point settledAt_; ///< all has reached the viewers
    Clock::time_point notBefore_; ///< while pictures follow each other
    std::unique_ptr<ViewerWatch> watch_; ///< null if nothing tells of viewers
};

} // namespace glimmerpane::x11
