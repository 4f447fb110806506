// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QSize>

#include <cstdint>
#include <functional>

namespace glimmerpane
{

enum class OffscreenWindowKind {
    Unlisted, ///< neither managed nor listed by a window manager
    Managed, ///< for programs that offer only windows listed by the window manager
};

/**
 * A real top-level window that other programs can capture although it is on no display. Black until
 * something is drawn into it. Destroyed with the object. Main thread.
 */
class OffscreenWindow
{
public:
    virtual ~OffscreenWindow() = default;

    virtual std::uint32_t id() const = 0; ///< the X window
    virtual QSize size() const = 0; ///< of the content, pixels

    /** Whether the window is shown, even if off-screen. */
    virtual bool isVisible() const = 0;

    virtual void orderFront() = 0;
    virtual void orderOut() = 0;

    /** Root pixels. */
    virtual void setFrameOrigin(QPoint origin) = 0;

    /** Called when the window is asked to close; it stays open. */
    std::function<void()> onCloseRequest;

    /** Called when the X server has lost what was drawn into the window. */
    std::function<void()> onContentsLost;
};

} // namespace glimmerpane
