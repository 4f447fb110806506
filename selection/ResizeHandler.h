// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"

namespace glimmerpane
{

/** Computes the drag of a window's side or corner. All in points, y up. */
class ResizeHandler
{
public:
    /** The part of a window under the pointer; `none` is its inside. */
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
    static constexpr double edgeThreshold = 15; ///< width of the band inside each side

    /**
     * `point` is in the window's coordinates, and `bounds` has its size. Corners take precedence
     * over sides, top over bottom and left over right.
     */
    ResizeEdge edgeAt(Point point, const Rect &bounds) const;

    /**
     * The frame after dragging the edge to `mouseLocation`; the opposite side stays. Never below
     * the minimum size and never past the screen; the screen takes precedence. Desktop coordinates.
     */
    Rect resizedFrame(ResizeEdge edge, Point mouseLocation, const Rect &initialFrame,
                      const Rect &screen) const;

    /**
     * The same, but width : height stays, up to whole points. The pointer is on the dragged side,
     * or on that of a corner's two which makes the frame larger; a frame of which only one side is
     * dragged grows around its middle in the other direction. Both sizes of the frame are positive.
     */
    Rect resizedInRatio(ResizeEdge edge, Point mouseLocation, const Rect &initialFrame,
                        const Rect &screen) const;
};

} // namespace glimmerpane
