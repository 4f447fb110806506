// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace glimmerpane
{

/**
 * Decides when the next frame may be made: immediately after a pause, then on a grid of one
 * interval. After a late frame, the next one may come up to half an interval early, so that one
 * late frame does not delay all that follow.
 *
 * A program that draws at the same rate has a grid of its own. While its frames have to wait for
 * our grid, our grid moves towards theirs by a 64th of an interval per frame, so that they are soon
 * shown without delay. This adds up to at most one interval per skipped frame, so a faster source
 * does not get more frames.
 *
 * While the picture changes at our rate, the pointer is updated along with it: separate frames for
 * the pointer would displace the picture's, which already use the full rate.
 */
class FramePacer
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit FramePacer(std::chrono::nanoseconds interval);

    TimePoint due() const { return due_; }
    /** When a frame may be made in which only the pointer is new. */
    TimePoint pointerDue() const;

    /** A frame was made at `now`, wanted since `wantedSince`. */
    void advance(TimePoint now, TimePoint wantedSince);

    /** The frame made at `now` showed more changes than the pointer. */
    void pictureShown(TimePoint now);

private:
    std::chrono::nanoseconds interval_;
    std::chrono::nanoseconds slipLeft_;
    TimePoint due_;
    TimePoint lastPicture_;
    bool isMoving_ = false; ///< the picture changes at our rate
};

} // namespace glimmerpane
