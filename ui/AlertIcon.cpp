// SPDX-License-Identifier: MIT
#include "ui/AlertIcon.h"

#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace glimmerpane
{

namespace
{

constexpr double side = 44; // points

void drawWarning(QPainter &painter)
{
    constexpr QRgb amber = 0xfff5b301;
    constexpr QRgb ink = 0xff3a2a00;
    const QPolygonF triangle({{22, 6.5}, {39.5, 37}, {4.5, 37}});
    // The thick line rounds the corners.
    painter.setPen(QPen(QColor(amber), 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(QColor(amber));
    painter.drawPolygon(triangle);
    painter.setPen(QPen(QColor(ink), 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(22, 16), QPointF(22, 25));
    painter.drawPoint(QPointF(22, 32.5));
}

void drawInformation(QPainter &painter, const Theme &theme)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.accent);
    painter.drawEllipse(QRectF(3, 3, side - 6, side - 6));
    painter.setPen(QPen(theme.onAccent, 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawPoint(QPointF(22, 13));
    painter.drawLine(QPointF(22, 20.5), QPointF(22, 31.5));
}

} // namespace

QPixmap alertIcon(Alert::Style style, const Theme &theme, double devicePixelRatio)
{
    QPixmap icon((QSizeF(side, side) * devicePixelRatio).toSize());
    icon.setDevicePixelRatio(devicePixelRatio);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    if (style == Alert::Style::Warning) {
        drawWarning(painter);
    } else {
        drawInformation(painter, theme);
    }
    return icon;
}

} // namespace glimmerpane
