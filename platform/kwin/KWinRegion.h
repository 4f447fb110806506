// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <functional>

namespace glimmerpane::kwin
{

/** What KWin is asked for to get a rectangle of X11's pixels. */
struct KWinRegion {
    QRect logical; ///< KWin's units
    double scale = 1; ///< of the picture; KWin's pixels for each unit
    /** Which part of a picture of this size the rectangle is. */
    std::function<QRect(QSize picture)> part;
};

/**
 * `pixels` and `logical` are the bounds of all displays in Xwayland's pixels and in KWin's units.
 * Xwayland's pixels are a multiple of the units where KWin lets X11 programs scale themselves.
 */
KWinRegion regionOf(QRect area, QRect pixels, QRect logical);

} // namespace glimmerpane::kwin
