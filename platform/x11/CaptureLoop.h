// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/FramePacer.h"
#include "platform/x11/Connection.h"
#include "platform/x11/PointerTracker.h"
#include "platform/x11/ServerId.h"

#include <memory>
#include <optional>

namespace glimmerpane::x11
{

/** The area that a loop captures. */
struct CaptureSource {
    Rect area; ///< points, desktop coordinates
    double scale = 1; ///< pixels per point
    bool showsCursor = false;
    std::chrono::nanoseconds minimumFrameInterval{};
};

/** What the main thread tells a loop. */
struct CaptureOrder {
    QRect redraw; ///< to be shown again, root pixels
    std::optional<Rect> area; ///< to be captured from now on, points, desktop coordinates
};

/**
 * The work of the capture thread: waits for the X server to report a change, asks what changed, and
 * passes on a frame that describes it. The only pixels it reads are the pointer's. When displays
 * change, it continues with the same points, wherever these are now; it ends by itself only after
 * none of them has been on a display for a moment.
 */
class CaptureLoop
{
public:
    /**
     * `orders` is the reading end of a pipe of CaptureOrder; end-of-file ends the loop. Waits for
     * the server.
     */
    static std::expected<std::unique_ptr<CaptureLoop>, Error> create(
        CaptureSource source, int orders, CaptureStream::Handlers handlers);

    /**
     * Returns at the end of the pipe, or once the stream has ended by itself and the handler was
     * called.
     */
    void run();

private:
    CaptureLoop(Connection connection, const Extensions &extensions, CaptureSource source,
                int orders, CaptureStream::Handlers handlers);
    std::expected<void, Error> watch();
    bool findArea();

    void readOrders();
    void readEvents();
    void handle(const xcb_generic_event_t &event);
    void followArea();
    void end(Error error);
    void rest();
    void look();
    QRegion readRegion(xcb_xfixes_fetch_region_cookie_t cookie) const;
    void wait(std::optional<std::chrono::nanoseconds> limit) const;

    const Connection connection_;
    const Extensions extensions_;
    CaptureSource source_;
    const int orders_;
    const CaptureStream::Handlers handlers_;
    std::optional<PointerTracker> pointer_;
    FramePacer pacer_;
    Damage damage_;
    Region changes_;
    QRect area_; ///< the source's current position, root pixels
    Region areaRegion_;
    std::optional<FramePacer::TimePoint> giveUpAt_; ///< while the area is on no display

    QRegion carried_; ///< to include in the next frame in any case
    std::optional<PointerSprite> shownPointer_;
    bool isDamaged_ = false;
    bool isPointerStale_ = false;
    bool isRunning_ = true;
};

} // namespace glimmerpane::x11
