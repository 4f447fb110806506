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
 * picture and forwards pointer events. It gets no keyboard input.
 */
class ButtonContainerView : public QWidget
{
    Q_OBJECT

public:
    ButtonContainerView();

    /** The panel's frame, centred in a selection of this size; points, y up. */
    static Rect frameIn(QSizeF selection);

    /** Premultiplied ARGB, `scale` pixels per point, transparent around the buttons. */
    QImage picture(double scale);

    /**
     * Passes a pointer event at a position in the panel (points, y down) to the buttons. False if
     * it does not concern them: it is outside, and did not start on one.
     */
    bool handle(PointerEvent::Kind kind, QPointF place);

Q_SIGNALS:
    void confirmed();
    void cancelled();
    /** The picture has changed. */
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
    QPushButton *pressed_ = nullptr; ///< until the release, wherever the pointer is
};

} // namespace glimmerpane
