// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/EventReader.h"
#include "platform/x11/Render.h"

#include <QTimer>

#include <chrono>

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
    WindowTouch(const Connection &connection, xcb_window_t window, EventReader &events)
        : connection_(connection)
        , window_(window)
        , events_(events)
        , context_(makeGraphicsContext(connection, window))
    {
        timer_.callOnTimeout([this] { touch(); });
    }

    void start()
    {
        using namespace std::chrono_literals;
        timer_.start(250ms); // the longest wait of a new viewer
    }
    void stop() { timer_.stop(); }

    std::function<void()> onTouch; ///< before the requests are sent

private:
    void touch()
    {
        xcb_copy_area(connection_.get(), window_, window_, context_.get(), 0, 0, 0, 0, 1, 1);
        if (onTouch) {
            onTouch();
        }
        events_.flush();
    }

    const Connection &connection_;
    const xcb_window_t window_;
    EventReader &events_;
    const GraphicsContext context_;
    QTimer timer_;
};

} // namespace glimmerpane::x11
