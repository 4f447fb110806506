// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <span>

namespace glimmerpane
{

// Points are Point and Rect, fractions of the desktop's own unit; pixels are QPoint, QSize and
// QRect. Only the functions and MainDisplay below convert between them.

/** A position in points. The direction of y depends on the use. */
struct Point {
    double x = 0;
    double y = 0;

    friend Point operator-(Point a, Point b) { return {.x = a.x - b.x, .y = a.y - b.y}; }
    friend bool operator==(Point, Point) = default;
};

/** A half-open rectangle in points. The direction of y depends on the use. */
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    Point origin() const { return {.x = x, .y = y}; }
    double minX() const { return x; }
    double maxX() const { return x + width; }
    double midX() const { return x + width / 2; }
    double minY() const { return y; }
    double maxY() const { return y + height; }
    double midY() const { return y + height / 2; }

    friend bool operator==(const Rect &, const Rect &) = default;
};

/**
 * The same rectangle with the direction of y reversed, on a display `height` points high. Converts
 * between desktop coordinates (origin at the bottom-left corner of the primary display, y up) and
 * the primary display's own (origin at its top-left corner, y down).
 */
Rect flipped(const Rect &rect, double height);

/**
 * Converts points of a display (origin at its top-left corner, y down) to desktop pixels.
 * `displayOrigin` is the display's top-left corner in desktop pixels, `scale` is pixels per point.
 * Origin and size are rounded separately, so that a size in points is the same number of pixels at
 * every position. Coordinates that X cannot represent (16 bits) are clamped.
 */
QRect toDesktopPixels(const Rect &points, QPoint displayOrigin, double scale);

/** The inverse: desktop pixels to points of the display. */
Rect toDisplayPoints(QRect desktopPixels, QPoint displayOrigin, double scale);

/**
 * Converts a size in points to pixels, rounded as in toDesktopPixels(). A size that is not finite
 * becomes zero; one out of range is clamped.
 */
QSize toPixels(double width, double height, double scale);

/** The primary display. Its bottom-left corner is the origin of desktop coordinates. */
struct MainDisplay {
    QRect pixels; ///< desktop pixels
    double scale = 1; ///< pixels per point

    /** In desktop coordinates, whose origin it defines. */
    Rect frame() const;

    /** Converts an area in desktop coordinates, rounded as in toDesktopPixels(). */
    QRect areaPixels(const Rect &area) const;
    /** The inverse of areaPixels(). */
    Rect areaOf(QRect desktopPixels) const;
    /** The top-left corner of a desktop pixel, in desktop coordinates. */
    Point pointOf(QPoint desktopPixel) const;

    friend bool operator==(const MainDisplay &, const MainDisplay &) = default;
};

/**
 * Where a window of the area's size shows one pixel only: in the corner of a display that lies
 * farthest from the area, beside which there is no other display. Where every corner has
 * neighbours, the one that shows least. Desktop pixels.
 */
QPoint onePixelPlace(QRect area, std::span<const QRect> displays);

/** Scales a picture to fit into `bounds`, centred and keeping its aspect ratio. */
QRect aspectFit(QSize picture, QRect bounds);

} // namespace glimmerpane
