// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRect>
#include <QSize>

namespace glimmerpane
{

constexpr int largestWindowSide = 32767; ///< pixels; sizes and positions are 16 bits wide in X

/** A half-open rectangle in points. Which way y grows is said where one is used. */
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double minX() const { return x; }
    double maxX() const { return x + width; }
    double midX() const { return x + width / 2; }
    double minY() const { return y; }
    double maxY() const { return y + height; }
    double midY() const { return y + height / 2; }

    friend bool operator==(const Rect &, const Rect &) = default;
};

/**
 * The same rectangle with y growing the other way inside a display `height` points high. Desktop
 * coordinates (origin at the bottom-left corner of the primary display, y up) and the primary
 * display's own (origin at its top-left corner, y down) turn into each other by it.
 */
Rect flipped(const Rect &rect, double height);

/**
 * Points of a display (origin at its top-left corner, y down) as root pixels. `displayOrigin` is
 * the display's top-left corner in root pixels, `scale` the pixels for each point. The origin and
 * the size are rounded each for itself, so that a size in points is the same number of pixels
 * wherever it lies. Coordinates that X cannot express (16 bits) become the nearest that it can.
 */
QRect toRootPixels(const Rect &points, QPoint displayOrigin, double scale);

/** The way back: root pixels as points of the display. */
Rect toDisplayPoints(QRect rootPixels, QPoint displayOrigin, double scale);

/**
 * A size in points as pixels, rounded as toRootPixels() does. A size that is not finite comes out
 * as zero, one out of range as the nearest integer.
 */
QSize toPixels(double width, double height, double scale);

/** The primary display, from whose bottom-left corner desktop coordinates are counted. */
struct MainDisplay {
    QRect pixels; ///< root pixels
    double scale = 1; ///< pixels for each point

    /** In desktop coordinates; its origin is theirs. */
    Rect frame() const;

    /** An area in desktop coordinates, rounded as toRootPixels() does. */
    QRect areaPixels(const Rect &area) const;
    /** The way back. */
    Rect areaOf(QRect rootPixels) const;
    /** The top-left corner of a root pixel, in desktop coordinates. */
    QPointF pointOf(QPoint rootPixel) const;

    friend bool operator==(const MainDisplay &, const MainDisplay &) = default;
};

/** Where a picture goes that is scaled to fit into `bounds`, centred, its aspect ratio kept. */
QRect aspectFit(QSize picture, QRect bounds);

} // namespace glimmerpane
