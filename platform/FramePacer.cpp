// SPDX-License-Identifier: MIT
#include "platform/FramePacer.h"

#include <algorithm>

namespace glimmerpane
{

FramePacer::FramePacer(std::chrono::nanoseconds interval)
    : interval_(interval)
{
}

void FramePacer::advance(TimePoint now, TimePoint wantedSince)
{
    const auto slip = wantedSince < due_ ? interval_ / 512 : std::chrono::nanoseconds::zero();
    due_ = std::max(due_, now - interval_ / 2) + interval_ - slip;
}

} // namespace glimmerpane
