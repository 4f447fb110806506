// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"
#include "platform/OverlayWindow.h"
#include "selection/GlassButton.h"

#include <QEvent>
#include <QImage>
#include <QWidget>

#include <optional>

namespace glimmerpane
{

/**
 * The panel with "Confirm" above "Cancel". It is never shown as a window: the selection draws its
 * picture and hands it the pointer, and the keyboard does not reach it.
 */
class ButtonContainerView : public QWidget
{
    Q_OBJECT

public:
    ButtonContainerView();

    /** In the middle of a selection of this size; points, y up. */
    static Rect frameIn(QSizeF selection);

    /** Premultiplied ARGB, `scale` pixels for each point, transparent beside the buttons. */
    QImage picture(double scale);

    /**
     * Lets the buttons see what the pointer does at a place of the panel (points, y down). False
     * where that is none of their concern: from outside of them, unless it began on one.
     */
    bool handle(PointerEvent::Kind kind, QPointF place);

Q_SIGNALS:
    void confirmed();
    void cancelled();
    /** The picture is another one now. */
    void lookChanged();

protected:
    void changeEvent(QEvent *event) override;

private:
    QPushButton *addButton(const QString &title, GlassButton::Emphasis emphasis, int y);
    QPushButton *buttonAt(QPointF place) const;
    void hover(QPushButton *button);
    void letGo();
    void send(QPushButton &button, QEvent::Type type, QPointF place);

    QPushButton *hovered_ = nullptr;
    QPushButton *pressed_ = nullptr; ///< from its press to the release, wherever the pointer is
};

} // namespace glimmerpane
