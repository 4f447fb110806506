// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"
#include "platform/OverlayWindow.h"

#include <QSizeF>

#include <array>
#include <vector>

namespace glimmerpane
{

/**
 * The appearance of the selection: frosted glass, a blue outline and eight handles. In points, y
 * up, with the origin at the bottom-left corner.
 */
class BorderView
{
public:
    /** The dark glass of the selection, for a display with this scale factor. */
    static FrostedGlass glass(double scale);

    /** Adapts to a new size of the selection. */
    void layout(QSizeF size);

    /** The parts of the outline's four sides that lie inside. */
    const std::array<Rect, 4> &outline() const { return outline_; }
    /** The corners bottom-left, bottom-right, top-left, top-right; the sides bottom, top, left,
     * right. */
    const std::array<Rect, 8> &handles() const { return handles_; }

    /** Outline and handles, in pixels from the top-left corner of a window of this size. */
    std::vector<QRect> marks(QSize windowPixels, double scale) const;

private:
    std::array<Rect, 4> outline_;
    std::array<Rect, 8> handles_;
};

} // namespace glimmerpane
