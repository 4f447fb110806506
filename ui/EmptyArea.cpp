// SPDX-License-Identifier: MIT
#include "ui/EmptyArea.h"

#include <QApplication>
#include <QMouseEvent>

namespace glimmerpane
{

EmptyArea::EmptyArea()
{
    constexpr int smallestHeight = 29; // room for a click even with large fonts
    setMinimumHeight(smallestHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void EmptyArea::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        press_ = event->globalPosition().toPoint();
    }
    event->ignore();
}

void EmptyArea::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint now = event->globalPosition().toPoint();
    if (press_ && (now - *press_).manhattanLength() >= QApplication::startDragDistance()) {
        press_.reset();
    }
    event->ignore();
}

void EmptyArea::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        const bool isClick = press_ && rect().contains(event->position().toPoint());
        press_.reset();
        if (isClick) {
            Q_EMIT clicked();
        }
    }
    event->ignore();
}

} // namespace glimmerpane
