// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"

#include <QRect>
#include <QString>

#include <optional>
#include <vector>

namespace glimmerpane
{

/** One monitor of the desktop. */
struct Display {
    QString name;
    QRect pixels; ///< desktop pixels

    friend bool operator==(const Display &, const Display &) = default;
};

/** The rectangle that has all displays, desktop pixels. */
inline QRect boundsOf(const std::vector<Display> &displays)
{
    QRect bounds;
    for (const Display &display : displays) {
        bounds |= display.pixels;
    }
    return bounds;
}

/** The monitors and how they are measured. Main thread. */
class Displays
{
public:
    virtual ~Displays() = default;

    /** Pixels per point. */
    virtual double scaleFactor() const = 0;

    /** The primary display comes first; empty if there is no display. */
    virtual std::vector<Display> displays() const = 0;

    /** The longest side that a window can have, in pixels. */
    virtual int largestWindowSide() const = 0;

    /** Null if there is no display. */
    std::optional<MainDisplay> mainDisplay() const
    {
        const auto all = displays();
        return all.empty()
            ? std::nullopt
            : std::optional(MainDisplay{.pixels = all.front().pixels, .scale = scaleFactor()});
    }
};

} // namespace glimmerpane
