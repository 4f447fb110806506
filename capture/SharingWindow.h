// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OutputWindow.h"
#include "services/Error.h"

#include <QRect>

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane
{

/**
 * The window "Glimmerpane - Output" that people share in a call. The capture service draws its
 * content. Closing it only notifies its owner. Main thread.
 */
class SharingWindow
{
public:
    /**
     * Creates a hidden, black window for an area of the desktop, in its pixels, whose size its
     * content has. If the desktop refuses, the window never becomes visible and content() returns
     * the error.
     */
    SharingWindow(OutputWindows &windows, QRect area);

    /** Called instead of closing the window. */
    std::function<void()> onCloseRequest;

    /** Called when the user wants to see the window, which stays unseen. */
    std::function<void()> onActivated;

    /** Called when isWatched() may have changed. */
    std::function<void()> onWatchedChanged;

    /** Only calls onCloseRequest. */
    void close();

    void orderFront();
    void orderOut();
    bool isVisible() const;
    /** Whether another program reads it; null if the desktop does not tell. */
    std::optional<bool> isWatched() const;

    QSize size() const { return size_; } ///< pixels

    /** The window to draw into; lives as long as this object. */
    std::expected<OutputWindow *, Error> content() const;

private:
    const QSize size_;
    std::expected<std::unique_ptr<OutputWindow>, Error> content_;
};

} // namespace glimmerpane
