// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OffscreenWindow.h"
#include "services/Error.h"

#include <QPoint>
#include <QSize>

#include <expected>
#include <functional>
#include <memory>

namespace glimmerpane
{

class Desktop;

/**
 * The window "Glimmerpane - Output" that people share in a call. The capture service draws its
 * content. Closing it only notifies its owner. Main thread.
 */
class SharingWindow
{
public:
    /**
     * Creates a hidden, black window with content of `size` pixels. If the X server refuses, the
     * window never becomes visible and content() returns the error.
     */
    SharingWindow(Desktop &desktop, QSize size);

    /** Called instead of closing the window. */
    std::function<void()> onCloseRequest;

    /** Only calls onCloseRequest. */
    void close();

    void orderFront();
    void orderOut();
    bool isVisible() const;

    /** Root pixels. */
    void setFrameOrigin(QPoint origin);

    /** The window to draw into; lives as long as this object. */
    std::expected<OffscreenWindow *, Error> content() const;

private:
    std::expected<std::unique_ptr<OffscreenWindow>, Error> content_;
};

/** An off-screen position for a window with content of `size` pixels; root pixels. */
QPoint unseenOrigin(QSize size);

} // namespace glimmerpane
