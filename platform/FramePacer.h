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
 */
class FramePacer
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit FramePacer(std::chrono::nanoseconds interval);

    bool isDue(TimePoint now) const { return now >= due_; }
    TimePoint due() const { return due_; }

    /** A frame was made `now` that could have been made at `wantedSince`. */
    void advance(TimePoint now, TimePoint wantedSince);

private:
    std::chrono::nanoseconds interval_;
    std::chrono::nanoseconds slipLeft_;
    TimePoint due_;
};

} // namespace glimmerpane
