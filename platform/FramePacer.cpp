// SPDX-License-Identifier: MIT
#include "platform/FramePacer.h"

#include <algorithm>

namespace glimmerpane
{

FramePacer::FramePacer(std::chrono::nanoseconds interval)
    : interval_(interval)
{
}

void FramePacer::advance(TimePoint now)
{
    due_ = std::max(due_, now - interval_ / 2) + interval_;
}

} // namespace glimmerpane
