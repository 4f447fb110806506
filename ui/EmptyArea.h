// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QWidget>

#include <optional>

namespace glimmerpane
{

/** Empty room that tells a click from a drag, and leaves both to what lies behind it as well. */
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
    std::optional<QPoint> press_; ///< of what can still become a click; screen coordinates
};

} // namespace glimmerpane
