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
 * The look of the selection: frosted glass, a blue outline and eight handles. In points, y up, the
 * origin in the bottom-left corner.
 */
class BorderView
{
public:
    /** The dark glass that the selection is made of, for a display of this scale factor. */
    static FrostedGlass glass(double scale);

    /** The selection has a new size. */
    void layout(QSizeF size);

    /** The four sides of the outline, as far as they lie inside. */
    const std::array<Rect, 4> &outline() const { return outline_; }
    /** The corners bottom-left, bottom-right, top-left, top-right; the sides bottom, top, left,
     * right. */
    const std::array<Rect, 8> &handles() const { return handles_; }

    /** Outline and handles in pixels from the top-left corner of a window of this size. */
    std::vector<QRect> marks(QSize windowPixels, double scale) const;

private:
    std::array<Rect, 4> outline_;
    std::array<Rect, 8> handles_;
};

} // namespace glimmerpane
