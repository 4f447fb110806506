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

/** What a loop captures. */
struct CaptureSource {
    Rect area; ///< points, desktop coordinates
    double scale = 1; ///< pixels for each point
    bool showsCursor = false;
    std::chrono::nanoseconds minimumFrameInterval{};
};

/**
 * The work of the capture thread: waits for the X server to say that something changed, asks what,
 * and hands out a frame that says so. It reads no pixels but those of the pointer. When displays
 * change it goes on with the same points, wherever these are now; it ends by itself only once no
 * display has shown any of them for a moment.
 */
class CaptureLoop
{
public:
    /**
     * `redraws` is the reading end of a pipe: each QRect in it (root pixels) is shown again, its
     * end ends the loop. Waits for the server.
     */
    static std::expected<std::unique_ptr<CaptureLoop>, Error> create(
        CaptureSource source, int redraws, CaptureStream::Handlers handlers);

    /** Returns after the pipe's end, or after the stream ended by itself and the handler was told.
     */
    void run();

private:
    CaptureLoop(Connection connection, const Extensions &extensions, CaptureSource source,
                int redraws, CaptureStream::Handlers handlers);
    std::expected<void, Error> watch();
    bool findArea();

    void readRedraws();
    void readEvents();
    void handle(const xcb_generic_event_t &event);
    void followDisplays();
    void end(Error error);
    void rest();
    void look();
    QRegion readRegion(xcb_xfixes_fetch_region_cookie_t cookie) const;
    void wait(std::optional<std::chrono::nanoseconds> limit) const;

    const Connection connection_;
    const Extensions extensions_;
    const CaptureSource source_;
    const int redraws_;
    const CaptureStream::Handlers handlers_;
    std::optional<PointerTracker> pointer_;
    FramePacer pacer_;
    Damage damage_;
    Region changes_;
    QRect area_; ///< where the source's points are now, root pixels
    Region areaRegion_;
    std::optional<FramePacer::TimePoint> giveUpAt_; ///< while the area lies on no display

    QRegion carried_; ///< to be in the next frame, whatever the server says
    std::optional<PointerSprite> shownPointer_;
    bool isDamaged_ = false;
    bool isPointerStale_ = false;
    bool isRunning_ = true;
};

} // namespace glimmerpane::x11
