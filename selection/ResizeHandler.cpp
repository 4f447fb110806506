// SPDX-License-Identifier: MIT
#include "selection/ResizeHandler.h"

#include <algorithm>
#include <array>

namespace glimmerpane
{

namespace
{

enum class Side {
    none,
    low, ///< left or bottom
    high, ///< right or top
};

struct Sides {
    Side horizontal;
    Side vertical;

    friend bool operator==(const Sides &, const Sides &) = default;
};

/** By edge, in the order of its cases. */
constexpr std::array<Sides, 9> sidesOf{{{Side::none, Side::none},
                                        {Side::none, Side::high},
                                        {Side::none, Side::low},
                                        {Side::low, Side::none},
                                        {Side::high, Side::none},
                                        {Side::low, Side::high},
                                        {Side::high, Side::high},
                                        {Side::low, Side::low},
                                        {Side::high, Side::low}}};

struct Span {
    double low;
    double length;

    double high() const { return low + length; }
};

Side sideAt(double position, double length, Side first)
{
    const bool isLow = position <= ResizeHandler::edgeThreshold;
    const bool isHigh = position >= length - ResizeHandler::edgeThreshold;
    if (isLow && isHigh) {
        return first;
    }
    return isLow ? Side::low : isHigh ? Side::high : Side::none;
}

Span resized(Span span, Side side, double pointer, Span screen, double smallest)
{
    switch (side) {
    case Side::high:
        span.length = std::min(screen.high() - span.low, std::max(smallest, pointer - span.low));
        return span;
    case Side::low: {
        const double high = span.high();
        const double length = std::min(high - screen.low, std::max(smallest, high - pointer));
        return {.low = high - length, .length = length};
    }
    case Side::none:
        break;
    }
    return span;
}

} // namespace

ResizeHandler::ResizeEdge ResizeHandler::edgeAt(Point point, const Rect &bounds) const
{
    const Sides sides{.horizontal = sideAt(point.x, bounds.width, Side::low),
                      .vertical = sideAt(point.y, bounds.height, Side::high)};
    return static_cast<ResizeEdge>(std::ranges::find(sidesOf, sides) - sidesOf.begin());
}

Rect ResizeHandler::resizedFrame(ResizeEdge edge, Point mouseLocation, const Rect &initialFrame,
                                 const Rect &screen) const
{
    const auto [horizontal, vertical] = sidesOf[static_cast<std::size_t>(edge)];
    const Span x = resized({initialFrame.x, initialFrame.width}, horizontal, mouseLocation.x,
                           {screen.x, screen.width}, minWidth);
    const Span y = resized({initialFrame.y, initialFrame.height}, vertical, mouseLocation.y,
                           {screen.y, screen.height}, minHeight);
    return {.x = x.low, .y = y.low, .width = x.length, .height = y.length};
}

} // namespace glimmerpane
