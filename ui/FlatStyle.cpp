// SPDX-License-Identifier: MIT
#include "ui/FlatStyle.h"

#include "ui/ActionButton.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr double cornerRadius = 6;
constexpr double focusRingWidth = 2;
constexpr int controlHeight = 30;

struct ButtonColors {
    QColor fill;
    QColor border;
    QColor label;
    QColor innerRing; ///< separates the focus ring from the fill
};

ActionButton::Emphasis emphasisOf(const QStyleOptionButton &option, const QWidget *widget)
{
    if (const auto *button = qobject_cast<const ActionButton *>(widget)) {
        return button->emphasis();
    }
    return option.features.testFlag(QStyleOptionButton::DefaultButton)
        ? ActionButton::Emphasis::Accent
        : ActionButton::Emphasis::Plain;
}

ButtonColors enabledColors(ActionButton::Emphasis emphasis, const Theme &theme)
{
    switch (emphasis) {
    case ActionButton::Emphasis::Accent:
        return {theme.accent, mixed(theme.accent, Qt::black, 0.15), theme.onAccent, theme.onAccent};
    case ActionButton::Emphasis::Danger:
        return {theme.danger, mixed(theme.danger, Qt::black, 0.15), theme.onDanger, theme.onDanger};
    case ActionButton::Emphasis::Plain:
        break;
    }
    return {theme.control, theme.controlBorder, theme.text, theme.control};
}

ButtonColors buttonColors(const QStyleOptionButton &option, const QWidget *widget)
{
    const Theme theme = themeFor(option.palette);
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return {theme.disabledControl, mixed(theme.disabledControl, theme.text, 0.07),
                theme.disabledText, theme.disabledControl};
    }
    const auto emphasis = emphasisOf(option, widget);
    ButtonColors colors = enabledColors(emphasis, theme);
    // Away from the label's colour, so that the label stays readable.
    const bool towardsBlack = emphasis == ActionButton::Emphasis::Plain
        ? !theme.isDark
        : colors.label == QColor(Qt::white);
    const QColor shade = towardsBlack ? Qt::black : Qt::white;
    if (option.state.testFlag(QStyle::State_Sunken)) {
        colors.fill = mixed(colors.fill, shade, 0.18);
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
        colors.fill = mixed(colors.fill, shade, 0.07);
    }
    return colors;
}

void drawBox(QPainter &painter, const QRectF &rect, const QColor &fill, const QColor &line,
             double lineWidth)
{
    const double inset = lineWidth / 2;
    painter.setBrush(fill);
    painter.setPen(QPen(line, lineWidth));
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), cornerRadius - inset,
                            cornerRadius - inset);
}

} // namespace

FlatStyle::FlatStyle(const QString &baseStyle)
    : QProxyStyle(baseStyle)
{
}

void FlatStyle::polish(QApplication *application)
{
    QProxyStyle::polish(application);
    application->installEventFilter(this);
}

bool FlatStyle::eventFilter(QObject *watched, QEvent *event)
{
    const bool isAltKey = (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Alt;
    if (isAltKey) {
        showMnemonics(event->type() == QEvent::KeyPress);
    } else if (event->type() == QEvent::WindowDeactivate) { // the release goes to another program
        showMnemonics(false);
    }
    return QProxyStyle::eventFilter(watched, event);
}

void FlatStyle::showMnemonics(bool shown)
{
    if (std::exchange(showsMnemonics_, shown) != shown) {
        for (QWidget *widget : QApplication::allWidgets()) {
            widget->update();
        }
    }
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (element == CE_PushButton && button) {
        drawPushButton(*button, *painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void FlatStyle::drawPushButton(const QStyleOptionButton &option, QPainter &painter,
                               const QWidget *widget) const
{
    const ButtonColors colors = buttonColors(option, widget);
    const QRectF rect(option.rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (option.state.testFlag(State_HasFocus) && option.state.testFlag(State_KeyboardFocusChange)) {
        const QColor ring = themeFor(option.palette).focusRing;
        drawBox(painter, rect, colors.fill, colors.innerRing, focusRingWidth * 2);
        drawBox(painter, rect, Qt::transparent, ring, focusRingWidth);
    } else {
        drawBox(painter, rect, colors.fill, colors.border, 1);
    }
    painter.restore();

    QStyleOptionButton label(option);
    label.palette.setColor(QPalette::ButtonText, colors.label);
    label.state.setFlag(State_HasFocus, false);
    QProxyStyle::drawControl(CE_PushButtonLabel, &label, &painter, widget);
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    if (element != PE_PanelLineEdit || !qobject_cast<const QLineEdit *>(widget)) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const Theme theme = themeFor(option->palette);
    const bool focused = option->state.testFlag(State_HasFocus);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    drawBox(*painter, QRectF(option->rect), theme.field,
            focused ? theme.focusRing : theme.fieldBorder, focused ? focusRingWidth : 1);
    painter->restore();
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                  const QSize &contents, const QWidget *widget) const
{
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_PushButton || type == CT_LineEdit) {
        size.setHeight(std::max(size.height(), controlHeight));
    }
    if (type == CT_PushButton) {
        size.rwidth() += 12;
    }
    return size;
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) {
        return 0;
    }
    if (hint == SH_UnderlineShortcut) {
        return showsMnemonics_ ? 1 : 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

} // namespace glimmerpane
