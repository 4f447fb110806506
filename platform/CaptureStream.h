// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"
#include "services/Error.h"

#include <QImage>
#include <QRegion>
#include <QString>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <vector>

namespace glimmerpane
{

/** One monitor of the desktop. */
struct Display {
    QString name;
    QRect pixels; ///< root pixels

    friend bool operator==(const Display &, const Display &) = default;
};

/** What can be captured; the primary display comes first. */
struct ShareableContent {
    std::vector<Display> displays;
};

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

/** The pointer to draw over a frame. */
struct PointerSprite {
    std::uint32_t serial = 0; ///< equal serials mean equal images
    QPoint topLeft; ///< of the image, root pixels
    QImage image; ///< premultiplied ARGB
};

enum class SampleType {
    Screen,
    Audio,
};

/** One frame: where the picture is and which part of it is new. The pixels stay in the X server. */
struct SampleBuffer {
    std::uint32_t drawable = 0; ///< holds the picture; an X id
    QRect source; ///< the captured rectangle, pixels of the drawable
    QRegion changed; ///< since the previous frame, pixels of the drawable
    std::optional<PointerSprite> pointer; ///< if it touches the source
    std::chrono::steady_clock::time_point time;
};

/**
 * Captures one rectangle of a display. When displays change, it continues with the same points,
 * relative to the primary display at that time, as long as any of them is on a display.
 */
class CaptureStream
{
public:
    struct Handlers {
        /** A frame, on the stream's own thread "captureQueue". */
        std::function<void(SampleBuffer, SampleType)> didOutputSampleBuffer;
        /** The stream ended by itself. Called on its thread, which then ends. */
        std::function<void(Error)> didStopWithError;
    };

    virtual ~CaptureStream() = default;

    /** Blocks until frames arrive or the start has failed. Any thread, once. */
    virtual std::expected<void, Error> startCapture(Handlers handlers) = 0;

    /** Blocks until no handler is running. Any thread but the stream's own. */
    virtual void stopCapture() = 0;

    /** Takes back a frame that was not shown: its changes are included in the next one. */
    virtual void returnSampleBuffer(const SampleBuffer &sample) = 0;

    /** Makes the next frame a complete one. */
    virtual void invalidate() = 0;
};

} // namespace glimmerpane
