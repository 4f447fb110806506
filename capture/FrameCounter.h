// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace glimmerpane
{

/** Counts the frames of one session. */
class FrameCounter
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    void show(TimePoint now) { latest_[shown_++ % latest_.size()] = now; }
    void drop() { ++dropped_; }

    std::int64_t dropped() const { return dropped_; }

    /** Number of frames shown in the second before `now`. */
    std::int64_t inLastSecond(TimePoint now) const
    {
        const auto count = std::min(shown_, latest_.size());
        return std::count_if(latest_.begin(), latest_.begin() + std::ptrdiff_t(count),
                             [now](TimePoint at) { return now - at < std::chrono::seconds(1); });
    }

private:
    std::array<TimePoint, 128> latest_{}; ///< ring buffer; a second has at most 61 frames
    std::size_t shown_ = 0;
    std::int64_t dropped_ = 0;
};

} // namespace glimmerpane
