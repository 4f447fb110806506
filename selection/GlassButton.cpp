// SPDX-License-Identifier: MIT
#include "selection/GlassButton.h"

#include <QFontMetricsF>
#include <QPainter>

namespace glimmerpane
{

namespace
{

// The glass is at most (140, 140, 142), over white; only white stands out well against that (3.4 :
// 1). A white label is readable (4.5 : 1) on each of the fills.
constexpr QRgb white = 0xffffffff;

struct Fills {
    QRgb idle;
    QRgb hovered;
    QRgb pressed;
};

constexpr Fills plain{.idle = 0xff2c2c31, .hovered = 0xff505058, .pressed = 0xff121214};
constexpr Fills accent{.idle = 0xff0060df, .hovered = 0xff146be6, .pressed = 0xff003d94};

constexpr int labelFlags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;

} // namespace

GlassButton::GlassButton(const QString &label, Emphasis emphasis, QWidget *parent)
    : QPushButton(label, parent)
    , emphasis_(emphasis)
{
    setFocusPolicy(Qt::NoFocus);
}

void GlassButton::paintEvent(QPaintEvent *)
{
    constexpr double radius = 6;
    constexpr double gap = 1; // to the adjacent button
    constexpr QSizeF labelMargin(8, 4);
    const double line = isDown() || underMouse() ? 2 : 1;
    const double inset = line / 2;
    const QRectF box = QRectF(rect()).adjusted(inset, gap + inset, -inset, -gap - inset);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(white), line));
    painter.setBrush(fill());
    painter.drawRoundedRect(box, radius - inset, radius - inset);

    const QRectF room = QRectF(rect()).adjusted(labelMargin.width(), labelMargin.height(),
                                                -labelMargin.width(), -labelMargin.height());
    painter.setFont(fittingFont(room.size()));
    painter.drawText(room, labelFlags, text());
}

QColor GlassButton::fill() const
{
    const Fills &fills = emphasis_ == Emphasis::Accent ? accent : plain;
    return isDown() ? fills.pressed : underMouse() ? fills.hovered : fills.idle;
}

QFont GlassButton::fittingFont(QSizeF room) const
{
    constexpr int smallest = 6; // pixels
    QFont fitting = font();
    for (int size = fontInfo().pixelSize(); size > smallest; --size) {
        const QSizeF needed = QFontMetricsF(fitting).size(labelFlags, text());
        if (needed.width() <= room.width() && needed.height() <= room.height()) {
            break;
        }
        fitting.setPixelSize(size - 1);
    }
    return fitting;
}

} // namespace glimmerpane
