// SPDX-License-Identifier: MIT
#include "selection/ButtonContainerView.h"

#include <QApplication>
#include <QMouseEvent>

#include <cmath>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr int buttonWidth = 120; // in points
constexpr int buttonHeight = 30;

} // namespace

ButtonContainerView::ButtonContainerView()
{
    setFixedSize(buttonWidth, 2 * buttonHeight);
    using Emphasis = GlassButton::Emphasis;
    connect(addButton(tr("Confirm"), Emphasis::Accent, 0), &QPushButton::clicked, this,
            &ButtonContainerView::confirmed);
    connect(addButton(tr("Cancel"), Emphasis::Plain, buttonHeight), &QPushButton::clicked, this,
            &ButtonContainerView::cancelled);
}

QPushButton *ButtonContainerView::addButton(const QString &title, GlassButton::Emphasis emphasis,
                                            int y)
{
    auto *button = new GlassButton(title, emphasis, this);
    button->setGeometry(0, y, buttonWidth, buttonHeight);
    button->show(); // the panel itself stays hidden, but only shown children are drawn
    return button;
}

Rect ButtonContainerView::frameIn(QSizeF selection)
{
    constexpr double height = 2 * buttonHeight;
    return {.x = (selection.width() - buttonWidth) / 2,
            .y = (selection.height() - height) / 2,
            .width = buttonWidth,
            .height = height};
}

QImage ButtonContainerView::picture(double scale)
{
    QImage image(toPixels(width(), height(), scale), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    render(&image, {}, {}, DrawChildren);
    return image;
}

bool ButtonContainerView::handle(PointerEvent::Kind kind, QPointF place)
{
    using Kind = PointerEvent::Kind;
    QPushButton *const under = kind == Kind::Leave ? nullptr : buttonAt(place);
    if (kind == Kind::Press) {
        pressed_ = under;
        if (under) {
            send(*under, QEvent::MouseButtonPress, place);
        }
    } else if (pressed_ && kind == Kind::Drag) {
        send(*pressed_, QEvent::MouseMove, place);
        return true;
    } else if (pressed_ && kind == Kind::Release) {
        send(*std::exchange(pressed_, nullptr), QEvent::MouseButtonRelease, place);
        return true;
    } else if (kind != Kind::Drag) {
        letGo();
        hover(under);
    }
    return under != nullptr && kind != Kind::Drag;
}

/** For when another client received the button's release. */
void ButtonContainerView::letGo()
{
    if (QPushButton *const button = std::exchange(pressed_, nullptr)) {
        button->setDown(false);
        Q_EMIT lookChanged();
    }
}

void ButtonContainerView::send(QPushButton &button, QEvent::Type type, QPointF place)
{
    const bool wasDown = button.isDown();
    const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    const auto changed = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const QPointF local = place - QPointF(button.pos());
    QMouseEvent event(type, local, local, changed, held, Qt::NoModifier);
    QApplication::sendEvent(&button, &event);
    if (button.isDown() != wasDown) {
        Q_EMIT lookChanged();
    }
}

QPushButton *ButtonContainerView::buttonAt(QPointF place) const
{
    const QPoint pixel(static_cast<int>(std::floor(place.x())),
                       static_cast<int>(std::floor(place.y())));
    return qobject_cast<QPushButton *>(childAt(pixel));
}

void ButtonContainerView::hover(QPushButton *button)
{
    if (button == hovered_) {
        return;
    }
    for (QPushButton *changed : {std::exchange(hovered_, button), button}) {
        if (changed) {
            changed->setAttribute(Qt::WA_UnderMouse, changed == button);
        }
    }
    Q_EMIT lookChanged();
}

void ButtonContainerView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange
        || event->type() == QEvent::FontChange) {
        Q_EMIT lookChanged();
    }
}

} // namespace glimmerpane
