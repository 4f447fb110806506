// SPDX-License-Identifier: MIT
#include "ui/TrayPicture.h"

#include <QColor>
#include <QPainter>
#include <QPixmap>

namespace glimmerpane
{

namespace
{

// Dark enough for the white signs on them, and apart from each other by those, too.
constexpr QRgb red = 0xffe0241b;
constexpr QRgb orange = 0xffd97400;
constexpr QRgb blue = 0xff0a6ee6;

// Everything below is in units of the icon's side.
constexpr QRectF badge(0.42, 0.42, 0.58, 0.58);
constexpr double rim = 0.05; ///< white, so that the badge is seen on the icon and on dark panels

QRgb colorOf(TrayState state)
{
    switch (state) {
    case TrayState::Paused:
        return orange;
    case TrayState::Starting:
        return blue;
    default:
        return red;
    }
}

/** In white, on the badge. */
void drawSign(QPainter &painter, TrayState state)
{
    const QPointF middle = badge.center();
    if (state == TrayState::Paused) {
        for (const double x : {-0.14, 0.04}) {
            painter.drawRect(QRectF(middle.x() + x, middle.y() - 0.14, 0.1, 0.28));
        }
    } else if (state == TrayState::Starting) {
        for (const double x : {-0.14, 0.0, 0.14}) {
            painter.drawEllipse(middle + QPointF(x, 0), 0.05, 0.05);
        }
    } else if (state == TrayState::Unwatched) {
        painter.drawEllipse(middle, 0.15, 0.15);
    }
}

QPixmap pixmap(const QIcon &program, TrayState state, int side)
{
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(picture.rect(), program.pixmap(QSize(side, side), 1.0));
    if (state == TrayState::Idle) {
        return picture;
    }
    painter.scale(side, side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(badge);
    painter.setBrush(QColor(colorOf(state)));
    painter.drawEllipse(badge.adjusted(rim, rim, -rim, -rim));
    painter.setBrush(Qt::white);
    drawSign(painter, state);
    return picture;
}

} // namespace

QIcon trayPicture(const QIcon &program, TrayState state)
{
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 44, 48, 64}) {
        icon.addPixmap(pixmap(program, state, side));
    }
    return icon;
}

} // namespace glimmerpane
