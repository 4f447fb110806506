// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <xcb/xcb.h>

#include <cstdint>

namespace glimmerpane::x11
{

// Coordinates and sizes as in the protocol, 16 bits wide.

inline std::int16_t coordinate(int value)
{
    return static_cast<std::int16_t>(value);
}

inline std::uint16_t extent(int value)
{
    return static_cast<std::uint16_t>(value);
}

inline xcb_rectangle_t rectangleOf(const QRect &rectangle)
{
    return {.x = coordinate(rectangle.x()),
            .y = coordinate(rectangle.y()),
            .width = extent(rectangle.width()),
            .height = extent(rectangle.height())};
}

} // namespace glimmerpane::x11
