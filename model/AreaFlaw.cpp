// SPDX-License-Identifier: MIT
#include "model/AreaFlaw.h"

#include <algorithm>
#include <cmath>

namespace glimmerpane
{

namespace
{

bool isOnDisplay(const CaptureFrame &frame, const Displays &desktop)
{
    const auto displays = desktop.displays();
    if (displays.empty()) {
        return true; // the capture reports that itself
    }
    const MainDisplay main{.pixels = displays.front().pixels, .scale = desktop.scaleFactor()};
    const QRect area = main.areaPixels(rectOf(frame));
    return std::ranges::any_of(
        displays, [area](const Display &display) { return display.pixels.intersects(area); });
}

Error flaw(const QString &text)
{
    return {.text = text, .log = {}};
}

} // namespace

Rect rectOf(const CaptureFrame &frame)
{
    return {.x = frame.x,
            .y = frame.y,
            .width = std::abs(frame.width),
            .height = std::abs(frame.height)};
}

std::optional<Error> flawOf(const CaptureFrame &frame, const Displays &desktop)
{
    if (!std::isfinite(frame.width) || !std::isfinite(frame.height)) {
        return flaw(Error::tr("The area's width and height must be finite numbers."));
    }
    if (std::isnan(frame.x) || std::isnan(frame.y)) {
        return flaw(Error::tr("The area's X and Y must be numbers."));
    }
    const QSize size
        = toPixels(std::abs(frame.width), std::abs(frame.height), desktop.scaleFactor());
    if (size.isEmpty()) {
        return flaw(Error::tr("The area is empty. Its width and height must be at least 1."));
    }
    if (std::max(size.width(), size.height()) > desktop.largestWindowSide()) {
        return flaw(Error::tr("The area is too large. Each side can be at most %n pixels.", nullptr,
                              desktop.largestWindowSide()));
    }
    if (!isOnDisplay(frame, desktop)) {
        return flaw(Error::tr("The area is not on any display. Move it onto one."));
    }
    return std::nullopt;
}

} // namespace glimmerpane
