// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/DisplayLayer.h"
#include "platform/OffscreenWindow.h"

#include <expected>
#include <memory>
#include <optional>

namespace glimmerpane
{

/** What the program asks of the desktop it runs on. Main thread, but for shareableContent(). */
class Desktop
{
public:
    virtual ~Desktop() = default;

    /** Pixels for each point. */
    virtual double scaleFactor() const = 0;

    /** The primary display in desktop coordinates; nothing where there is no display. */
    virtual std::optional<Rect> mainScreenFrame() const = 0;

    /**
     * What there is to capture. Fails where this program may not read the screen, or where the X
     * server lacks what capturing needs. Blocks; any thread.
     */
    virtual std::expected<ShareableContent, Error> shareableContent() const = 0;

    /** Opens the desktop's own settings program, where one is known. */
    virtual void openPrivacySettings() = 0;

    /** A window with content of `size` pixels at `origin` (root pixels), not yet ordered in. */
    virtual std::expected<std::unique_ptr<OffscreenWindow>, Error> makeOffscreenWindow(
        const QString &title, QPoint origin, QSize size)
        = 0;

    /** A layer over the whole content of the window. */
    virtual std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer(
        const OffscreenWindow &window)
        = 0;

    /** A stream that is not started yet. */
    virtual std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration)
        = 0;
};

} // namespace glimmerpane
