// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <functional>

namespace glimmerpane::pipewire
{

/** What a compositor is asked for to get a rectangle of X11's pixels. */
struct LogicalRegion {
    QRect logical; ///< the compositor's units
    double scale = 1; ///< of the picture; pixels for each unit
    /** Which part of a picture of this size the rectangle is. */
    std::function<QRect(QSize picture)> part;
};

/**
 * `pixels` and `logical` are the bounds of all displays in Xwayland's pixels and in the
 * compositor's units. The pixels are a multiple of the units where the compositor lets X11 programs
 * scale themselves, as KWin can and mutter does from version 47 on.
 */
LogicalRegion regionOf(QRect area, QRect pixels, QRect logical);

} // namespace glimmerpane::pipewire
