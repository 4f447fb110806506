// SPDX-License-Identifier: MIT
#include "rig/OutputReader.h"

#include "rig/ColorWindow.h"
#include "rig/DamageWatch.h"
#include "rig/FrameNumber.h"
#include "rig/WaitFor.h"

#include <cstdlib>
#include <set>

namespace glimmerpane::testing
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds limit{10};

/** A colour that no other change in a row has. */
QRgb colorOf(int change)
{
    return qRgb(40 + change * 53 % 200, 40 + change * 97 % 200, 40 + change % 200);
}

/** A player may take the colours through another colour space and back. */
bool isNear(QRgb seen, QRgb color)
{
    constexpr int rounding = 8;
    return std::abs(qRed(seen) - qRed(color)) <= rounding
        && std::abs(qGreen(seen) - qGreen(color)) <= rounding
        && std::abs(qBlue(seen) - qBlue(color)) <= rounding;
}

/** Reads one pixel again and again. */
void awaitColor(const CapturedWindow &output, QPoint place, QRgb color,
                std::chrono::microseconds pause)
{
    const auto end = Clock::now() + limit;
    while (!isNear(required(output.part(QRect(place, QSize(1, 1)))).pixel(0, 0), color)) {
        require(Clock::now() < end, "a change never came to the output");
        std::this_thread::sleep_for(pause);
    }
}

/** Between 40 and 79 ms, never in step with a display's frames. */
std::chrono::milliseconds pauseAfter(int change)
{
    return std::chrono::milliseconds(40 + change * 17 % 40);
}

} // namespace

Result<uint32_t> shownNumber(const CapturedWindow &window, QPoint place)
{
    const auto strip = window.part(QRect(place, frameNumber::stripSize));
    const auto number = strip ? frameNumber::read(*strip) : std::nullopt;
    return number ? Result<uint32_t>(*number)
                  : failure(QStringLiteral("the animation is not to be seen"));
}

void awaitMotion(const CapturedWindow &window, QPoint place)
{
    constexpr uint32_t enough = 20;
    std::optional<uint32_t> first;
    const auto moves = [&] {
        const auto number = shownNumber(window, place);
        first = number && !first ? *number : first;
        return number && *number > *first + enough;
    };
    require(waitFor(moves, limit), "the animation is not to be seen moving");
}

SeenFrames countFrames(const QString &displayName, const CapturedWindow &window, QPoint place,
                       std::chrono::milliseconds time)
{
    constexpr std::chrono::milliseconds eventLimit{20};
    auto watch = required(DamageWatch::open(displayName, window.window()));
    std::set<uint32_t> numbers;
    const auto begin = Clock::now();
    while (Clock::now() < begin + time) {
        const auto number
            = watch.take(eventLimit) ? shownNumber(window, place) : failure(QString());
        if (number) {
            numbers.insert(*number);
        }
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    require(!numbers.empty(), "no frame was shown");
    return {.seconds = seconds,
            .shown = static_cast<int>(numbers.size()),
            .sent = static_cast<int>(*numbers.rbegin() - *numbers.begin() + 1)};
}

std::vector<double> measureLatency(const XClient &client, const LatencyOptions &options)
{
    const auto patch
        = required(ColorWindow::show(client, {.rectangle = options.patch, .color = colorOf(0)}));
    const auto output = required(CapturedWindow::open(client, options.output, options.source));
    const QPoint place = options.patch.center() - options.area.topLeft();
    awaitColor(output, place, colorOf(0), options.pause);
    std::vector<double> times;
    for (int change = 1; change <= options.changes; ++change) {
        std::this_thread::sleep_for(pauseAfter(change));
        patch.setColor(colorOf(change));
        const auto begin = Clock::now();
        awaitColor(output, place, colorOf(change), options.pause);
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    return times;
}

} // namespace glimmerpane::testing
