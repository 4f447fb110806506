// SPDX-License-Identifier: MIT
#pragma once

#include "rig/PatternWindow.h"

#include <atomic>
#include <thread>

namespace glimmerpane::testing
{

/**
 * Plays a pattern window on its own thread, at absolute deadlines of the monotonic clock, so that
 * delays do not add up. The number rises by one with every frame that is actually sent.
 */
class PatternAnimation
{
public:
    static constexpr int defaultRate = 60; ///< frames a second

    explicit PatternAnimation(PatternWindow window, int rate = defaultRate);
    ~PatternAnimation();
    Q_DISABLE_COPY_MOVE(PatternAnimation)

    void start();
    /** Returns after the server has drawn the last frame, which stays visible. */
    void freeze();

    /** The number of the frame sent last. */
    uint32_t lastFrame() const { return lastFrame_; }
    /** Deadlines at which no frame was sent, because we or the server were too slow. */
    uint32_t missedDeadlines() const { return missed_; }
    /** Deadlines at which a frame was sent before the server had drawn the previous one. */
    uint32_t lateFrames() const { return late_; }

private:
    void play(const std::stop_token &stop);

    PatternWindow window_;
    int rate_;
    std::atomic<uint32_t> lastFrame_ = 0;
    std::atomic<uint32_t> missed_ = 0;
    std::atomic<uint32_t> late_ = 0;
    std::jthread thread_;
};

} // namespace glimmerpane::testing
