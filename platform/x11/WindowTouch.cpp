// SPDX-License-Identifier: MIT
#include "platform/x11/WindowTouch.h"

#include <utility>

namespace glimmerpane::x11
{

namespace
{

using namespace std::chrono_literals;

constexpr auto often = 250ms;
constexpr auto seldom = 10s; ///< so that nothing waits forever, whatever was not told

/** How soon the compositor can have something new to show, such as to a new viewer. */
constexpr auto soon = 50ms;

/** How long it may take until it records for a viewer that has come. */
constexpr auto arrival = 3s;

/** For how long the last picture may wait until the compositor, at rest, draws. */
constexpr auto settling = 500ms;

} // namespace

WindowTouch::WindowTouch(const Connection &connection, xcb_window_t window, EventReader &events,
                         const ViewerWatcher &watcher, std::function<void()> viewersChanged,
                         std::function<void()> also)
    : connection_(connection)
    , window_(window)
    , events_(events)
    , also_(std::move(also))
    , context_(makeGraphicsContext(connection, window))
{
    timer_.callOnTimeout([this] { touch(); });
    expectViewer();
    const auto news = [this, viewersChanged = std::move(viewersChanged)] {
        expectViewer();
        viewersChanged();
    };
    watch_ = watcher ? watcher(news) : nullptr;
}

void WindowTouch::expectViewer()
{
    expectedUntil_ = Clock::now() + arrival;
    timer_.start(soon);
}

void WindowTouch::noteDrawn(bool isPictureNew)
{
    const auto now = Clock::now();
    settledAt_ = now + settling;
    if (timer_.intervalAsDuration() > often) {
        timer_.start(soon);
    }
    // The compositor has drawn the screen for each new picture, and so handled the one before.
    if (isPictureNew && now - std::exchange(lastPicture_, now) < often) {
        notBefore_ = now + often;
    }
}

void WindowTouch::touch()
{
    const auto now = Clock::now();
    const bool isWatched = watch_ && watch_->isWorking();
    const bool isViewerExpected = !isWatched || now < expectedUntil_;
    if (!isViewerExpected && now < notBefore_) {
        timer_.start(std::chrono::ceil<std::chrono::milliseconds>(notBefore_ - now));
        return;
    }
    xcb_copy_area(connection_.get(), window_, window_, context_.get(), 0, 0, 0, 0, 1, 1);
    if (also_) {
        also_();
    }
    events_.flush();
    timer_.start(isViewerExpected || now < settledAt_ ? often : std::chrono::milliseconds(seldom));
}

} // namespace glimmerpane::x11
