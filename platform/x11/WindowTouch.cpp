// SPDX-License-Identifier: MIT
#include "platform/x11/WindowTouch.h"

#include <algorithm>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

using namespace std::chrono_literals;

constexpr auto often = 250ms;
constexpr auto seldom = 10s; ///< so that nothing waits forever, whatever was not told

/** When the compositor can give a new viewer a picture, and how long it may take at most. */
constexpr auto soon = 50ms; // also to let it have what has just been drawn
constexpr auto arrival = 3s;

/** In a desktop at rest, the last picture may wait until the compositor draws. */
constexpr auto settling = 1s;

} // namespace

WindowTouch::WindowTouch(const Connection &connection, xcb_window_t window, EventReader &events,
                         const ViewerWatcher &watcher, std::function<void()> also)
    : connection_(connection)
    , window_(window)
    , events_(events)
    , also_(std::move(also))
    , context_(makeGraphicsContext(connection, window))
{
    timer_.callOnTimeout([this] { touch(); });
    expectViewer();
    watch_ = watcher ? watcher([this] { expectViewer(); }) : nullptr;
}

void WindowTouch::expectViewer()
{
    oftenUntil_ = std::max(oftenUntil_, Clock::now() + arrival);
    timer_.start(soon);
}

void WindowTouch::noteDrawn()
{
    oftenUntil_ = std::max(oftenUntil_, Clock::now() + settling);
    if (timer_.intervalAsDuration() > often) {
        timer_.start(soon);
    }
}

void WindowTouch::touch()
{
    xcb_copy_area(connection_.get(), window_, window_, context_.get(), 0, 0, 0, 0, 1, 1);
    if (also_) {
        also_();
    }
    events_.flush();
    const bool isWatched = watch_ && watch_->isWorking();
    const std::chrono::milliseconds next = isWatched && Clock::now() > oftenUntil_ ? seldom : often;
    if (timer_.intervalAsDuration() != next) {
        timer_.start(next);
    }
}

} // namespace glimmerpane::x11
