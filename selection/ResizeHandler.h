// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"

#include <QPointF>

namespace glimmerpane
{

/** The geometry of dragging a side or a corner of a window. All in points, y up. */
class ResizeHandler
{
public:
    /** What of a window the pointer is on; `none` is its inside. */
    enum class ResizeEdge {
        none,
        top,
        bottom,
        left,
        right,
        topLeft,
        topRight,
        bottomLeft,
        bottomRight,
    };

    static constexpr double minWidth = 200;
    static constexpr double minHeight = 150;
    static constexpr double edgeThreshold = 15; ///< depth of the band inside each side

    /**
     * `point` is in the coordinates of the window, whose size `bounds` has. Corners win over sides,
     * the top over the bottom and the left over the right.
     */
    ResizeEdge edgeAt(QPointF point, const Rect &bounds) const;

    /**
     * The frame after the edge was dragged to `mouseLocation`; the opposite side stays. Never below
     * the smallest size, and never past the screen, which wins where both cannot be. Desktop
     * coordinates.
     */
    Rect resizedFrame(ResizeEdge edge, QPointF mouseLocation, const Rect &initialFrame,
                      const Rect &screen) const;
};

} // namespace glimmerpane
