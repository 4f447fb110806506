// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/Geometry.h"
#include "services/Error.h"

#include <QCoroTask>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>

namespace glimmerpane
{

/** The display that a stream captures. No window is excluded. */
struct ContentFilter {
    MainDisplay display;
};

/** A duration of value / timescale seconds. */
struct MediaTime {
    std::int64_t value = 0;
    std::int32_t timescale = 1;

    std::chrono::nanoseconds duration() const
    {
        return std::chrono::nanoseconds(std::chrono::seconds(value)) / timescale;
    }
};

constexpr std::uint32_t pixelFormatBgra = 0x42475241; ///< the four-character code 'BGRA'

/**
 * What is requested of a stream. Frames are delivered in the display's own pixels; `width`,
 * `height` and `pixelFormat` describe them after conversion, for consumers that need it.
 */
struct StreamConfiguration {
    std::int64_t width = 0; ///< pixels
    std::int64_t height = 0; ///< pixels
    Rect sourceRect; ///< points of the display, origin at its top-left corner, y down
    bool showsCursor = false;
    std::uint32_t pixelFormat = pixelFormatBgra;
    MediaTime minimumFrameInterval{.value = 1, .timescale = 60};
    bool capturesAudio = false;
};

/**
 * Captures one rectangle of a display. When displays change, it continues with the same points,
 * relative to the primary display at that time, as long as any of them is on a display. Main
 * thread, except for the handlers.
 */
class CaptureStream
{
public:
    /** Called on the stream's own thread, "captureQueue", or on the main thread. */
    struct Handlers {
        std::function<void(SampleBuffer)> didOutputSampleBuffer;
        /**
         * The stream ended by itself, as cancelled if the user stopped it outside this program; its
         * thread ends after this.
         */
        std::function<void(Error)> didStopWithError;
    };

    virtual ~CaptureStream() = default;

    /** Finishes when frames arrive or the start has failed. Once per stream. */
    virtual QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) = 0;

    /** Returns immediately. A handler that is running meanwhile still finishes. */
    virtual void stopCapture() = 0;

    /** Takes back a frame that was not shown: its changes are included in the next one. */
    virtual void returnSampleBuffer(const SampleBuffer &sample) = 0;

    /** Makes the next frame a complete one. */
    virtual void invalidate() = 0;

    /**
     * Captures `area` (points, desktop coordinates) instead, from a complete frame on that follows
     * at once. Returns immediately, and can be called for each frame. False if this stream can only
     * capture what it was made for.
     */
    virtual bool move(const Rect & /*area*/) { return false; }
};

} // namespace glimmerpane
