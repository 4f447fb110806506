// SPDX-License-Identifier: MIT
#include "platform/FramePacer.h"

#include <algorithm>

namespace glimmerpane
{

FramePacer::FramePacer(std::chrono::nanoseconds interval)
    : interval_(interval)
    , slipLeft_(interval)
{
}

void FramePacer::advance(TimePoint now, TimePoint wantedSince)
{
    if (now - due_ >= interval_) {
        slipLeft_ = interval_;
    }
    const bool wasHeld = wantedSince < due_;
    const auto slip = wasHeld ? std::min(interval_ / 64, slipLeft_) : interval_.zero();
    slipLeft_ -= slip;
    due_ = std::max(due_, now - interval_ / 2) + interval_ - slip;
}

} // namespace glimmerpane
