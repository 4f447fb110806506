// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QSize>

#include <cstdint>
#include <functional>

namespace glimmerpane
{

enum class OffscreenWindowKind {
    Unlisted, ///< no window manager touches it; not among the windows that it lists
    Managed, ///< for programs that offer only what the window manager lists
};

/**
 * A real top-level window of the desktop that other programs can capture although no display shows
 * it. Black until something is drawn into it. Destroyed with the object. Main thread.
 */
class OffscreenWindow
{
public:
    virtual ~OffscreenWindow() = default;

    virtual std::uint32_t id() const = 0; ///< the X window
    virtual QSize size() const = 0; ///< of the content, pixels

    /** Whether the window is ordered in, wherever it lies. */
    virtual bool isVisible() const = 0;

    virtual void orderFront() = 0;
    virtual void orderOut() = 0;

    /** Root pixels. */
    virtual void setFrameOrigin(QPoint origin) = 0;

    /** Called when somebody asks the window to close; it stays open. */
    std::function<void()> onCloseRequest;

    /** Called when the X server has lost what was drawn into the window. */
    std::function<void()> onContentsLost;
};

} // namespace glimmerpane
