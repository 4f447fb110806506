// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/EventReader.h"
#include "platform/x11/Render.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <utility>

namespace glimmerpane::x11
{

/**
 * Draws one pixel of a window anew, as it is, four times a second: a compositor that records a
 * window may give a new viewer its picture only once something is drawn. The window, its connection
 * and the reader must outlive it.
 */
class WindowTouch
{
public:
    /** `also` is called each time before the requests are sent. */
    WindowTouch(const Connection &connection, xcb_window_t window, EventReader &events,
                std::function<void()> also = {})
        : connection_(connection)
        , window_(window)
        , events_(events)
        , also_(std::move(also))
        , context_(makeGraphicsContext(connection, window))
    {
        using namespace std::chrono_literals;
        timer_.callOnTimeout([this] { touch(); });
        timer_.start(250ms); // the longest wait of a new viewer
    }

private:
    void touch()
    {
        xcb_copy_area(connection_.get(), window_, window_, context_.get(), 0, 0, 0, 0, 1, 1);
        if (also_) {
            also_();
        }
        events_.flush();
    }

    const Connection &connection_;
    const xcb_window_t window_;
    EventReader &events_;
    const std::function<void()> also_;
    const GraphicsContext context_;
    QTimer timer_;
};

} // namespace glimmerpane::x11
