// SPDX-License-Identifier: MIT
#pragma once

#include "services/Error.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <Qt>

#include <expected>
#include <functional>
#include <memory>
#include <vector>

namespace glimmerpane
{

/** The material of an overlay: the screen behind it, blurred and tinted. */
struct FrostedGlass {
    QColor tint;
    double strength = 0; ///< of the tint: 0 leaves the blurred screen as it is, 1 hides it
    int blurRadius = 0; ///< pixels, about
};

/** What is drawn on the glass. All positions are in pixels from the overlay's top-left corner. */
struct OverlayPicture {
    std::vector<QRect> marks; ///< filled with markColor
    QColor markColor;
    QImage panel; ///< premultiplied ARGB, drawn above the marks
    QPoint panelOrigin;

    friend bool operator==(const OverlayPicture &, const OverlayPicture &) = default;
};

/** A small picture beside an overlay, which takes no pointer. */
struct OverlayLabel {
    QImage picture; ///< premultiplied ARGB, opaque; null for none
    QPoint topLeft; ///< desktop pixels
};

/** A pointer event of an overlay. */
struct PointerEvent {
    enum class Kind {
        Press, ///< of the left button, as is everything until the release
        Drag,
        Release,
        Move, ///< with the left button up; also when the pointer enters
        Leave,
    };
    Kind kind = Kind::Move;
    QPoint position; ///< desktop pixels; while the button is down it may lie outside
    bool isShiftDown = false; ///< of a drag
};

/**
 * A window above all others, on every workspace. It takes pointer input but never the keyboard, and
 * no window manager moves it. Only the program's own modal windows lie above it; while one is open,
 * the overlay gets a leave event and then no pointer events. Hidden until presented. Main thread.
 */
class OverlayWindow
{
public:
    virtual ~OverlayWindow() = default;

    /** Shows the overlay at exactly this position (desktop pixels) with this picture, in one step.
     */
    virtual void present(QRect frame, const OverlayPicture &picture, const OverlayLabel &label) = 0;

    /**
     * Supports the arrow, the open hand, the cross and the two resize cursors; any other becomes
     * the arrow.
     */
    virtual void setCursor(Qt::CursorShape shape) = 0;

    virtual void hide() = 0;

    // Either callback may destroy the overlay.
    std::function<void(const PointerEvent &)> onPointer;

    /** Called once if the overlay is gone: destroyed from outside, or no longer on any display. */
    std::function<void()> onLost;
};

/** Makes overlays. Main thread. */
class Overlays
{
public:
    virtual ~Overlays() = default;

    /**
     * A hidden overlay. Its glass shows the screen's current content on the main display and at
     * `area` (desktop pixels).
     */
    virtual std::expected<std::unique_ptr<OverlayWindow>, Error> make(const QString &title,
                                                                      QRect area,
                                                                      const FrostedGlass &glass)
        = 0;
};

} // namespace glimmerpane
