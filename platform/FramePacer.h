// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace glimmerpane
{

/**
 * Says when the next frame may be made: at once after a pause, then on a grid of one interval. A
 * frame may be up to half an interval early against the one before if that one was late, so that
 * one late frame does not delay all that follow it.
 *
 * Whatever draws on the screen at the same rate has a grid of its own. As long as it has to wait
 * for ours, ours moves towards it, by a 64th of an interval with each frame, so that it is soon
 * shown without delay. In all that is no more than one interval for each time that a frame was left
 * out, so a faster source does not get more frames by it.
 *
 * While the picture moves at our rate, the pointer goes along with it: frames of its own would take
 * the places of the picture's, which come as often as they may already.
 */
class FramePacer
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit FramePacer(std::chrono::nanoseconds interval);

    TimePoint due() const { return due_; }
    /** When a frame may be made that shows nothing new but the pointer. */
    TimePoint pointerDue() const;

    /** A frame was made `now` that could have been made at `wantedSince`. */
    void advance(TimePoint now, TimePoint wantedSince);

    /** The frame of this time showed more that was new than the pointer. */
    void pictureShown(TimePoint now);

private:
    std::chrono::nanoseconds interval_;
    std::chrono::nanoseconds slipLeft_;
    TimePoint due_;
    TimePoint lastPicture_;
    bool isMoving_ = false; ///< the picture, at our rate
};

} // namespace glimmerpane
