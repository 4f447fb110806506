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

/** What the program asks of the desktop it runs on. Main thread, but for shareableContent(). */
class Desktop
{
public:
    virtual ~Desktop() = default;

    /** Pixels for each point. */
    virtual double scaleFactor() const = 0;

    /** The primary one first; none where there is no display. */
    virtual std::vector<Display> displays() const = 0;

    /** Nothing where there is no display. */
    std::optional<MainDisplay> mainDisplay() const
    {
        const auto all = displays();
        return all.empty()
            ? std::nullopt
            : std::optional(MainDisplay{.pixels = all.front().pixels, .scale = scaleFactor()});
    }

    /**
     * What there is to capture. Fails where this program may not read the screen, or where the X
     * server lacks what capturing needs. Blocks; any thread.
     */
    virtual std::expected<ShareableContent, Error> shareableContent() const = 0;

    /**
     * Has a window of this program shown above the others and with the keyboard, because the person
     * has just asked for it by starting the program; `startupId` is of that start, or empty.
     */
    virtual void activateWindow(std::uint32_t window, const QString &startupId) = 0;

    /**
     * Cuts a window of this program to a region of its own pixels, in which only it is drawn and
     * takes clicks. Does nothing where windows can only be rectangles.
     */
    virtual void setShape(std::uint32_t window, const QRegion &pixels) = 0;

    /** Opens the desktop's own settings program. False where none is known. */
    virtual bool openPrivacySettings() = 0;

    /** Has the desktop tell the person something, wherever they look; silent where it cannot. */
    virtual void notify(const QString &title, const QString &text) = 0;

    /** Hands an address to the program that the person has chosen for its kind. */
    virtual void openUrl(const QUrl &url) = 0;

    /** A window with content of `size` pixels at `origin` (root pixels), not yet ordered in. */
    virtual std::expected<std::unique_ptr<OffscreenWindow>, Error> makeOffscreenWindow(
        const QString &title, QPoint origin, QSize size)
        = 0;

    /**
     * A hidden overlay. Its glass is made of what the screen shows now on the main display and at
     * `area` (root pixels).
     */
    virtual std::expected<std::unique_ptr<OverlayWindow>, Error> makeOverlayWindow(
        const QString &title, QRect area, const FrostedGlass &glass)
        = 0;

    /** A layer over the whole content of the window. */
    virtual std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer(
        const OffscreenWindow &window)
        = 0;

    /**
     * Calls `pressed` with the pointer's place (root pixels) for as long as the monitor lives.
     * Nothing where the desktop does not tell of presses.
     */
    virtual std::unique_ptr<PressMonitor> monitorPresses(std::function<void(QPoint)> pressed) = 0;

    /** A stream that is not started yet. */
    virtual std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration)
        = 0;
};

} // namespace glimmerpane
