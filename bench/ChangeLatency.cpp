// SPDX-License-Identifier: MIT
#include "bench/ChangeLatency.h"

#include "tests/support/CapturedWindow.h"
#include "tests/support/ColorWindow.h"

namespace glimmerpane::bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds changeLimit{2};

/** A colour that no other change in a row has. */
QRgb colorOf(int change)
{
    return qRgb(40 + change * 53 % 200, 40 + change * 97 % 200, 40 + change % 200);
}

/** Reads one pixel again and again, as fast as the server answers. */
Result<void> awaitColor(const testing::CapturedWindow &output, QPoint place, QRgb color)
{
    const auto limit = Clock::now() + changeLimit;
    while (Clock::now() < limit) {
        const auto pixel = output.part(QRect(place, QSize(1, 1)));
        if (!pixel) {
            return testing::failure(pixel.error());
        }
        if (pixel->pixel(0, 0) == color) {
            return {};
        }
    }
    return testing::failure(QStringLiteral("a change never came to the output"));
}

/** Between 40 and 79 ms, never in step with a display's frames. */
std::chrono::milliseconds pauseAfter(int change)
{
    return std::chrono::milliseconds(40 + change * 17 % 40);
}

} // namespace

Result<std::vector<double>> measureLatency(const Desktop &desktop, const LatencyOptions &options)
{
    const auto patch = testing::ColorWindow::show(
        desktop.client(), {.rectangle = options.patch, .color = colorOf(0)});
    const auto output = testing::CapturedWindow::open(desktop.client(), options.output);
    if (!patch || !output) {
        return testing::failure(patch ? output.error() : patch.error());
    }
    const QPoint place = options.patch.center() - options.area.topLeft();
    if (const auto first = awaitColor(*output, place, colorOf(0)); !first) {
        return testing::failure(first.error());
    }
    std::vector<double> times;
    for (int change = 1; change <= options.changes; ++change) {
        if (!desktop.rest(pauseAfter(change))) {
            return testing::failure(QStringLiteral("stopped"));
        }
        patch->setColor(colorOf(change));
        const auto begin = Clock::now();
        if (const auto shown = awaitColor(*output, place, colorOf(change)); !shown) {
            return testing::failure(shown.error());
        }
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    return times;
}

} // namespace glimmerpane::bench
