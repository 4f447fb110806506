// SPDX-License-Identifier: MIT
#include "selection/SizeLabel.h"

#include "selection/BorderView.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace glimmerpane
{

namespace
{

constexpr QSizeF margin(8, 3); // points
constexpr double gap = 6; // points

QImage picture(const QString &text, double scale)
{
    const QFont font = QGuiApplication::font();
    const QFontMetricsF metrics(font);
    const double width = std::ceil(metrics.horizontalAdvance(text) + 2 * margin.width());
    const double height = std::ceil(metrics.height() + 2 * margin.height());
    QImage image(toPixels(width, height, scale), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(BorderView::glass(scale).tint);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, width, height), Qt::AlignCenter, text);
    return image;
}

QPoint placeBeside(QRect area, QSize label, QRect display, int distance)
{
    const QPoint middle = area.center() - QRect(QPoint(), label).center();
    const int above = area.top() - distance - label.height();
    const int below = area.bottom() + 1 + distance;
    const std::array<QPoint, 4> places{{{middle.x(), below},
                                        {middle.x(), above},
                                        {area.right() + 1 + distance, middle.y()},
                                        {area.left() - distance - label.width(), middle.y()}}};
    for (QPoint place : places) {
        // Along the area's side it may be anywhere.
        const bool isAcross = place.x() == middle.x();
        int &along = isAcross ? place.rx() : place.ry();
        const int first = isAcross ? display.left() : display.top();
        const int last = isAcross ? display.right() - label.width() + 1
                                  : display.bottom() - label.height() + 1;
        along = std::max(first, std::min(last, along));
        if (display.contains(QRect(place, label))) {
            return place;
        }
    }
    return {middle.x(), area.bottom() + 1 - 2 * distance - label.height()};
}

} // namespace

OverlayLabel sizeLabel(QRect area, const MainDisplay &display)
{
    const QImage image = picture(
        QStringLiteral("%1 \u00d7 %2").arg(area.width()).arg(area.height()), display.scale);
    return {.picture = image,
            .topLeft = placeBeside(area, image.size(), display.pixels,
                                   static_cast<int>(std::lround(gap * display.scale)))};
}

} // namespace glimmerpane
