// SPDX-License-Identifier: MIT
#include "ui/WindowControl.h"

#include "ui/Theme.h"

#include <QPainter>

namespace glimmerpane
{

namespace
{

constexpr int diameter = 22;
constexpr double glyphReach = 3.5; // from the centre

} // namespace

WindowControl::WindowControl(Kind kind, const QString &name, QWidget *parent)
    : QAbstractButton(parent)
    , kind_(kind)
{
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(WindowControl::sizeHint());
}

QSize WindowControl::sizeHint() const
{
    return {diameter, diameter};
}

void WindowControl::paintEvent(QPaintEvent * /*event*/)
{
    const Theme theme = themeFor(palette());
    const bool highlighted = underMouse() || isDown();
    const bool isAlarming = kind_ == Kind::Close && highlighted;
    QColor disc = mixed(theme.window, theme.text, highlighted ? 0.18 : 0.08);
    if (isAlarming) {
        disc = theme.danger;
    }
    if (isDown()) {
        disc = mixed(disc, theme.isDark ? Qt::white : Qt::black, 0.15);
    }
    const bool hasRing = hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasRing ? QPen(theme.focusRing, 2) : QPen(Qt::NoPen));
    painter.setBrush(disc);
    painter.drawEllipse(QRectF(rect()).adjusted(1, 1, -1, -1));

    painter.setPen(
        QPen(isAlarming ? theme.onDanger : theme.text, 1.5, Qt::SolidLine, Qt::RoundCap));
    const QPointF centre = QRectF(rect()).center();
    if (kind_ == Kind::Close) {
        const QPointF falling(glyphReach, glyphReach);
        const QPointF rising(glyphReach, -glyphReach);
        painter.drawLine(centre - falling, centre + falling);
        painter.drawLine(centre - rising, centre + rising);
    } else {
        const QPointF across(glyphReach, 0);
        const QPointF below(0, 3.25);
        painter.drawLine(centre + below - across, centre + below + across);
    }
}

} // namespace glimmerpane
