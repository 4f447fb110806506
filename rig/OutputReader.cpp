// SPDX-License-Identifier: MIT
#include "rig/OutputReader.h"

#include "rig/DamageWatch.h"
#include "rig/FrameNumber.h"

#include <set>

namespace glimmerpane::testing
{

Result<uint32_t> shownNumber(const CapturedWindow &output, QPoint place)
{
    const auto strip = output.part(QRect(place, frameNumber::stripSize));
    if (!strip) {
        return failure(strip.error());
    }
    const auto number = frameNumber::read(*strip);
    if (!number) {
        return failure(QStringLiteral("the output shows no frame number"));
    }
    return *number;
}

Result<SeenFrames> countFrames(const Desktop &desktop, const CapturedWindow &output, QPoint place,
                               std::chrono::milliseconds time)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds eventLimit{20};
    auto watch = DamageWatch::open(desktop.displayName(), output.window());
    if (!watch) {
        return failure(watch.error());
    }
    std::set<uint32_t> numbers;
    SeenFrames seen;
    const auto begin = Clock::now();
    while (Clock::now() < begin + time) {
        if (desktop.stopRequested()) {
            return failure(QStringLiteral("stopped"));
        }
        if (!watch->take(eventLimit)) {
            continue;
        }
        if (const auto number = shownNumber(output, place)) {
            numbers.insert(*number);
        } else {
            ++seen.unreadable;
        }
    }
    seen.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    seen.shown = static_cast<int>(numbers.size());
    seen.sent = numbers.empty() ? 0 : static_cast<int>(*numbers.rbegin() - *numbers.begin() + 1);
    return seen;
}

} // namespace glimmerpane::testing
