// SPDX-License-Identifier: MIT
#include "rig/ChangeLatency.h"

#include "rig/ColorWindow.h"

#include <cstdlib>
#include <thread>

namespace glimmerpane::testing
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds changeLimit{10};

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
Result<void> awaitColor(const CapturedWindow &output, QPoint place, QRgb color,
                        std::chrono::microseconds pause)
{
    const auto limit = Clock::now() + changeLimit;
    while (Clock::now() < limit) {
        const auto pixel = output.part(QRect(place, QSize(1, 1)));
        if (!pixel) {
            return failure(pixel.error());
        }
        if (isNear(pixel->pixel(0, 0), color)) {
            return {};
        }
        std::this_thread::sleep_for(pause);
    }
    return failure(QStringLiteral("a change never came to the output"));
}

/** Between 40 and 79 ms, never in step with a display's frames. */
std::chrono::milliseconds pauseAfter(int change)
{
    return std::chrono::milliseconds(40 + change * 17 % 40);
}

} // namespace

Result<std::vector<double>> measureLatency(const Desktop &desktop, const LatencyOptions &options)
{
    const auto patch
        = ColorWindow::show(desktop.client(), {.rectangle = options.patch, .color = colorOf(0)});
    const auto output = CapturedWindow::open(desktop.client(), options.output, options.source);
    if (!patch || !output) {
        return failure(patch ? output.error() : patch.error());
    }
    const QPoint place = options.patch.center() - options.area.topLeft();
    if (const auto first = awaitColor(*output, place, colorOf(0), options.pause); !first) {
        return failure(first.error());
    }
    std::vector<double> times;
    for (int change = 1; change <= options.changes; ++change) {
        if (!desktop.rest(pauseAfter(change))) {
            return failure(QStringLiteral("stopped"));
        }
        patch->setColor(colorOf(change));
        const auto begin = Clock::now();
        if (const auto shown = awaitColor(*output, place, colorOf(change), options.pause); !shown) {
            return failure(shown.error());
        }
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    return times;
}

} // namespace glimmerpane::testing
