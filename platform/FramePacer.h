// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace glimmerpane
{

/**
 * Says when the next frame may be made: at once after a pause, then on a grid of one interval. A
 * frame may be up to half an interval early against the one before if that one was late, so that
 * one late frame does not delay all that follow it.
 */
class FramePacer
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit FramePacer(std::chrono::nanoseconds interval);

    bool isDue(TimePoint now) const { return now >= due_; }
    TimePoint due() const { return due_; }

    /** A frame was made `now`. */
    void advance(TimePoint now);

private:
    std::chrono::nanoseconds interval_;
    TimePoint due_;
};

} // namespace glimmerpane
