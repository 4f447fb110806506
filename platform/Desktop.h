// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/DisplayLayer.h"
#include "platform/OffscreenWindow.h"
#include "platform/OverlayWindow.h"
#include "platform/PressMonitor.h"

#include <QRegion>
#include <QUrl>

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane
{

/** The desktop that the program runs on. Main thread, except for shareableContent(). */
class Desktop
{
public:
    virtual ~Desktop() = default;

    /** Pixels per point. */
    virtual double scaleFactor() const = 0;

    /** The primary display comes first; empty if there is no display. */
    virtual std::vector<Display> displays() const = 0;

    /** Null if there is no display. */
    std::optional<MainDisplay> mainDisplay() const
    {
        const auto all = displays();
        return all.empty()
            ? std::nullopt
            : std::optional(MainDisplay{.pixels = all.front().pixels, .scale = scaleFactor()});
    }

    /**
     * What can be captured. Fails if this program may not read the screen, or if the X server lacks
     * an extension that capturing needs. Blocks; any thread.
     */
    virtual std::expected<ShareableContent, Error> shareableContent() const = 0;

    /**
     * Raises and focuses one of this program's windows because the user has just launched the
     * program; `startupId` belongs to that launch, or is empty.
     */
    virtual void activateWindow(std::uint32_t window, const QString &startupId) = 0;

    /**
     * Limits one of this program's windows to a region of its pixels, both for drawing and for
     * clicks. Does nothing if windows can only be rectangles.
     */
    virtual void setShape(std::uint32_t window, const QRegion &pixels) = 0;

    /** Opens the desktop's settings program. False if none is known. */
    virtual bool openPrivacySettings() = 0;

    /** Shows a desktop notification. Silent if that is not possible. */
    virtual void notify(const QString &title, const QString &text) = 0;

    /** Opens a URL in the user's preferred program. */
    virtual void openUrl(const QUrl &url) = 0;

    /** A hidden window with content of `size` pixels at `origin` (root pixels). */
    virtual std::expected<std::unique_ptr<OffscreenWindow>, Error> makeOffscreenWindow(
        const QString &title, QPoint origin, QSize size)
        = 0;

    /**
     * A hidden overlay. Its glass shows the screen's current content on the main display and at
     * `area` (root pixels).
     */
    virtual std::expected<std::unique_ptr<OverlayWindow>, Error> makeOverlayWindow(
        const QString &title, QRect area, const FrostedGlass &glass)
        = 0;

    /** A layer that covers the window's content. */
    virtual std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer(
        const OffscreenWindow &window)
        = 0;

    /**
     * Calls `pressed` with the pointer's position (root pixels) while the monitor exists. Null if
     * the desktop does not report presses.
     */
    virtual std::unique_ptr<PressMonitor> monitorPresses(std::function<void(QPoint)> pressed) = 0;

    /** A stream that has not been started yet. */
    virtual std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration)
        = 0;
};

} // namespace glimmerpane
