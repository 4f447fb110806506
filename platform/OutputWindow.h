// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayLayer.h"
#include "services/Error.h"

#include <QRect>
#include <QString>

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane
{

/**
 * A real top-level window that other programs can capture although nobody sees it on a display.
 * Black until something is drawn into it. Hidden at first; destroyed with the object. Main thread.
 */
class OutputWindow
{
public:
    virtual ~OutputWindow() = default;

    /** Whether the window is shown, even if nobody sees it. */
    virtual bool isVisible() const = 0;

    virtual void orderFront() = 0;
    virtual void orderOut() = 0;

    /** A layer that covers the content; the window must outlive it. */
    virtual std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer() = 0;

    /** Called when the window is asked to close; it stays open. */
    std::function<void()> onCloseRequest;

    /** Called when the user wants to see the window, where the desktop lets them choose it. */
    std::function<void()> onActivated;

    /** Whether another program reads the window; null if the desktop does not tell. */
    virtual std::optional<bool> isWatched() const { return std::nullopt; }

    std::function<void()> onWatchedChanged; ///< isWatched() may have changed

    /** Called when what was drawn into the window is lost. */
    std::function<void()> onContentsLost;
};

/** Makes output windows. Main thread. */
class OutputWindows
{
public:
    virtual ~OutputWindows() = default;

    /** A hidden window for pictures of an area (desktop pixels), whose size its content has. */
    virtual std::expected<std::unique_ptr<OutputWindow>, Error> make(const QString &title,
                                                                     QRect area)
        = 0;
};

} // namespace glimmerpane
