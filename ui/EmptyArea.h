// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QWidget>

#include <optional>

namespace glimmerpane
{

/** Empty space that distinguishes clicks from drags, and passes both on to the widget behind it. */
class EmptyArea : public QWidget
{
    Q_OBJECT

public:
    EmptyArea();

Q_SIGNALS:
    void clicked();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    std::optional<QPoint> press_; ///< while it can still become a click; screen coordinates
};

} // namespace glimmerpane
