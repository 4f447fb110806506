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

FramePacer::TimePoint FramePacer::pointerDue() const
{
    return isMoving_ ? std::max(due_, lastPicture_ + interval_ * 3 / 2) : due_;
}

void FramePacer::pictureShown(TimePoint now)
{
    isMoving_ = now - lastPicture_ < interval_ * 5 / 4;
    lastPicture_ = now;
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
