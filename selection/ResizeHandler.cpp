// SPDX-License-Identifier: MIT
#include "selection/ResizeHandler.h"

#include <algorithm>
#include <array>
#include <cmath>

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

/** One direction of a drag. */
struct Axis {
    Span span; ///< at its start
    Side side;
    Span screen;

    /** The factor by which the pointer changes the length. */
    double factorAt(double pointer) const
    {
        switch (side) {
        case Side::high:
            return (pointer - span.low) / span.length;
        case Side::low:
            return (span.high() - pointer) / span.length;
        case Side::none:
            break;
        }
        return 0;
    }
    /** The largest length that the screen has room for. */
    double room() const
    {
        return side == Side::high ? screen.high() - span.low
            : side == Side::low   ? span.high() - screen.low
                                  : screen.length;
    }
    Span scaled(double factor) const
    {
        const double length = std::min(room(), std::round(span.length * factor));
        switch (side) {
        case Side::high:
            return {.low = span.low, .length = length};
        case Side::low:
            return {.low = span.high() - length, .length = length};
        case Side::none:
            break;
        }
        const double low = span.low + std::round((span.length - length) / 2);
        return {.low = std::max(screen.low, std::min(screen.high() - length, low)),
                .length = length};
    }
};

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

Rect ResizeHandler::resizedInRatio(ResizeEdge edge, Point mouseLocation, const Rect &initialFrame,
                                   const Rect &screen) const
{
    const auto [horizontal, vertical] = sidesOf[static_cast<std::size_t>(edge)];
    const Axis x{{initialFrame.x, initialFrame.width}, horizontal, {screen.x, screen.width}};
    const Axis y{{initialFrame.y, initialFrame.height}, vertical, {screen.y, screen.height}};
    const double wanted = std::max({x.factorAt(mouseLocation.x), y.factorAt(mouseLocation.y),
                                    minWidth / x.span.length, minHeight / y.span.length});
    const double factor = std::min({wanted, x.room() / x.span.length, y.room() / y.span.length});
    const Span across = x.scaled(factor);
    const Span up = y.scaled(factor);
    return {.x = across.low, .y = up.low, .width = across.length, .height = up.length};
}

} // namespace glimmerpane
