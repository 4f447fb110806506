// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <Qt>

#include <functional>
#include <vector>

namespace glimmerpane
{

/** What an overlay is made of: the screen behind it, blurred and tinted. */
struct FrostedGlass {
    QColor tint;
    double strength = 0; ///< of the tint: 0 leaves the blurred screen as it is, 1 hides it
    int blurRadius = 0; ///< pixels, about
};

/** What is drawn upon the glass. All places are in pixels from the overlay's top-left corner. */
struct OverlayPicture {
    std::vector<QRect> marks; ///< filled with markColor
    QColor markColor;
    QImage panel; ///< premultiplied ARGB, drawn above the marks
    QPoint panelOrigin;

    friend bool operator==(const OverlayPicture &, const OverlayPicture &) = default;
};

/** What the pointer did at an overlay. */
struct PointerEvent {
    enum class Kind {
        Press, ///< of the left button, as all that follows until the release
        Drag,
        Release,
        Move, ///< with the left button up; also the pointer's coming
        Leave,
    };
    Kind kind = Kind::Move;
    QPoint position; ///< root pixels; while the button is down it may lie outside
};

/**
 * A window above every other, on every workspace. It takes the pointer, but never the keyboard, and
 * no window manager moves it. Only the program's own modal windows lie above it; while there is one
 * it hears nothing of the pointer, after its leaving. Hidden until it is presented. Main thread.
 */
class OverlayWindow
{
public:
    virtual ~OverlayWindow() = default;

    /** Shows the overlay at exactly this place (root pixels) with this picture, in one step. */
    virtual void present(QRect frame, const OverlayPicture &picture) = 0;

    /** Of the arrow, the open hand, the cross and the two that resize; any other is the arrow. */
    virtual void setCursor(Qt::CursorShape shape) = 0;

    virtual void hide() = 0;

    // Either callback may destroy the overlay.
    std::function<void(const PointerEvent &)> onPointer;

    /** The overlay is gone: destroyed from outside, or no display is left where it lies. Once. */
    std::function<void()> onLost;
};

} // namespace glimmerpane
