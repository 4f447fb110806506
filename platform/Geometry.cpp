// SPDX-License-Identifier: MIT
#include "platform/Geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <tuple>

namespace glimmerpane
{

namespace
{

int rounded(double value, int lowest, int highest)
{
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int>(std::clamp(std::round(value), double(lowest), double(highest)));
}

// X keeps coordinates in 16 bits (INT16), and no desktop is larger.
int desktopCoordinate(double value)
{
    return rounded(value, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
}

} // namespace

Rect flipped(const Rect &rect, double height)
{
    return {.x = rect.x,
            .y = height - rect.y - rect.height,
            .width = rect.width,
            .height = rect.height};
}

QRect toDesktopPixels(const Rect &points, QPoint displayOrigin, double scale)
{
    const QPoint origin(desktopCoordinate(displayOrigin.x() + points.x * scale),
                        desktopCoordinate(displayOrigin.y() + points.y * scale));
    return {origin, toPixels(points.width, points.height, scale)};
}

Rect toDisplayPoints(QRect desktopPixels, QPoint displayOrigin, double scale)
{
    return {.x = (desktopPixels.x() - displayOrigin.x()) / scale,
            .y = (desktopPixels.y() - displayOrigin.y()) / scale,
            .width = desktopPixels.width() / scale,
            .height = desktopPixels.height() / scale};
}

QSize toPixels(double width, double height, double scale)
{
    constexpr int largest = std::numeric_limits<int>::max();
    const auto pixels = [scale](double points) {
        return std::isfinite(points) ? rounded(points * scale, -largest, largest) : 0;
    };
    return {pixels(width), pixels(height)};
}

Rect MainDisplay::frame() const
{
    return toDisplayPoints(pixels, pixels.topLeft(), scale);
}

QRect MainDisplay::areaPixels(const Rect &area) const
{
    return toDesktopPixels(flipped(area, frame().height), pixels.topLeft(), scale);
}

Rect MainDisplay::areaOf(QRect desktopPixels) const
{
    return flipped(toDisplayPoints(desktopPixels, pixels.topLeft(), scale), frame().height);
}

Point MainDisplay::pointOf(QPoint desktopPixel) const
{
    const Rect corner = areaOf({desktopPixel, QSize(0, 0)});
    return corner.origin();
}

QPoint onePixelPlace(QRect area, std::span<const QRect> displays)
{
    const QSize size = area.size();
    using Rank = std::tuple<int, double>; // visible pixels, then the negative distance
    std::optional<Rank> best;
    QPoint place(-size.width(), -size.height());
    for (const QRect &display : displays) {
        const int left = display.x() - size.width() + 1;
        const int top = display.y() - size.height() + 1;
        for (const QPoint origin : {QPoint(left, top), QPoint(left, display.bottom()),
                                    QPoint(display.right(), top), display.bottomRight()}) {
            const QRect window(origin, size);
            int visible = 0;
            for (const QRect &other : displays) {
                const QRect seen = window & other;
                visible += seen.width() * seen.height();
            }
            const QPoint away = (window & display).center() - area.center();
            const Rank rank(visible, -std::hypot(away.x(), away.y()));
            if (!best || rank < *best) {
                best = rank;
                place = origin;
            }
        }
    }
    return place;
}

QRect aspectFit(QSize picture, QRect bounds)
{
    // Even an extremely narrow picture keeps at least one visible pixel.
    const QSize fitted = picture.scaled(bounds.size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    return {bounds.x() + (bounds.width() - fitted.width()) / 2,
            bounds.y() + (bounds.height() - fitted.height()) / 2, fitted.width(), fitted.height()};
}

} // namespace glimmerpane
