// SPDX-License-Identifier: MIT
#include "selection/BorderView.h"

#include <cmath>

namespace glimmerpane
{

namespace
{

constexpr double lineWidth = 4; // centred on the edge; the outer half is not visible
constexpr double cornerSize = 20;
constexpr double barLength = 60;
constexpr double barDepth = 8;

/**
 * Rounds the sides rather than the size, so that rectangles that touch in points also touch in
 * pixels.
 */
QRect windowPixels(const Rect &rect, int height, double scale)
{
    const auto pixels
        = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
    const QPoint topLeft(pixels(rect.minX()), height - pixels(rect.maxY()));
    const QPoint end(pixels(rect.maxX()), height - pixels(rect.minY()));
    return {topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y())};
}

} // namespace

FrostedGlass BorderView::glass(double scale)
{
    constexpr double blurRadius = 16; // points
    constexpr double darkness = 0.55; // of the material, which is slightly transparent itself
    constexpr double opacity = 0.9;
    return {.tint = QColor(24, 24, 27),
            .strength = darkness * opacity,
            .blurRadius = static_cast<int>(std::lround(blurRadius * scale))};
}

void BorderView::layout(QSizeF size)
{
    const double w = size.width();
    const double h = size.height();
    constexpr double inside = lineWidth / 2;
    outline_ = {{{0, 0, w, inside},
                 {0, h - inside, w, inside},
                 {0, 0, inside, h},
                 {w - inside, 0, inside, h}}};
    const double middleX = (w - barLength) / 2;
    const double middleY = (h - barLength) / 2;
    handles_ = {{{0, 0, cornerSize, cornerSize},
                 {w - cornerSize, 0, cornerSize, cornerSize},
                 {0, h - cornerSize, cornerSize, cornerSize},
                 {w - cornerSize, h - cornerSize, cornerSize, cornerSize},
                 {middleX, 0, barLength, barDepth},
                 {middleX, h - barDepth, barLength, barDepth},
                 {0, middleY, barDepth, barLength},
                 {w - barDepth, middleY, barDepth, barLength}}};
}

std::vector<QRect> BorderView::marks(QSize window, double scale) const
{
    std::vector<QRect> marks;
    marks.reserve(outline_.size() + handles_.size());
    for (const Rect &side : outline_) {
        marks.push_back(windowPixels(side, window.height(), scale));
    }
    for (const Rect &handle : handles_) {
        marks.push_back(windowPixels(handle, window.height(), scale));
    }
    return marks;
}

} // namespace glimmerpane
