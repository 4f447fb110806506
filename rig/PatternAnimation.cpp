// SPDX-License-Identifier: MIT
#include "rig/PatternAnimation.h"

#include "rig/FrameNumber.h"

#include <chrono>

namespace glimmerpane::testing
{

PatternAnimation::PatternAnimation(PatternWindow window, int rate)
    : window_(std::move(window))
    , rate_(rate)
{
}

PatternAnimation::~PatternAnimation()
{
    freeze();
}

void PatternAnimation::start()
{
    if (!thread_.joinable()) {
        thread_ = std::jthread([this](const std::stop_token &stop) { play(stop); });
    }
}

void PatternAnimation::freeze()
{
    if (!thread_.joinable()) {
        return;
    }
    thread_.request_stop();
    thread_.join();
    window_.sync();
}

void PatternAnimation::play(const std::stop_token &stop)
{
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    const auto deadline = [&](int64_t tick) {
        return begin + std::chrono::nanoseconds(tick * 1'000'000'000 / rate_);
    };
    for (int64_t tick = 1; !stop.stop_requested() && !window_.isBroken(); ++tick) {
        while (Clock::now() >= deadline(tick + 1)) {
            ++tick;
            ++missed_;
        }
        std::this_thread::sleep_until(deadline(tick));
        const uint32_t next = (lastFrame_ + 1) % frameNumber::limit;
        const bool isLate = !window_.isDrawn();
        if (window_.show(next)) {
            lastFrame_ = next;
            late_ += isLate;
        } else {
            ++missed_;
        }
    }
}

} // namespace glimmerpane::testing
