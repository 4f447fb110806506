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
 * The window "Glimmerpane - Output" that people share in a call. Shows nothing of its own: the
 * capture service draws into its content. Closing it is a request to its owner. Main thread.
 */
class SharingWindow
{
public:
    /**
     * A hidden, black window with content of `size` pixels. Where the X server refuses it, the
     * window never becomes visible and content() tells why.
     */
    SharingWindow(Desktop &desktop, QSize size);

    /** Called instead of closing the window. */
    std::function<void()> onCloseRequest;

    /** Calls onCloseRequest and nothing more. */
    void close();

    void orderFront();
    void orderOut();
    bool isVisible() const;

    /** Root pixels. */
    void setFrameOrigin(QPoint origin);

    /** What is drawn into; lives as long as this window. */
    std::expected<OffscreenWindow *, Error> content() const;

private:
    std::expected<std::unique_ptr<OffscreenWindow>, Error> content_;
};

/** Where a window with content of `size` pixels lies unseen, root pixels. */
QPoint unseenOrigin(QSize size);

} // namespace glimmerpane
