// SPDX-License-Identifier: MIT
#include "ui/SelectableLine.h"

#include "ui/Theme.h"

#include <QClipboard>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QPainter>

namespace glimmerpane
{

SelectableLine::SelectableLine()
{
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::IBeamCursor);
    setMargin(ringRoom);
}

void SelectableLine::setColors(const Theme &theme)
{
    QPalette palette;
    palette.setColor(QPalette::WindowText, theme.secondaryText);
    setSelectionColors(palette, theme);
    setPalette(palette);
    ring_ = theme.focusRing;
}

void SelectableLine::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
        setSelection(0, static_cast<int>(text().size()));
    }
}

void SelectableLine::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy) && !hasSelectedText()) {
        QGuiApplication::clipboard()->setText(text());
    } else {
        QLabel::keyPressEvent(event);
    }
}

void SelectableLine::paintEvent(QPaintEvent *event)
{
    QLabel::paintEvent(event);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        constexpr double lineWidth = 2;
        constexpr double inset = lineWidth / 2;
        constexpr double cornerRadius = 3;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(ring_, lineWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cornerRadius,
                                cornerRadius);
    }
}

} // namespace glimmerpane
