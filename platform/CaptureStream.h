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

/** What there is to capture; the primary display comes first. */
struct ShareableContent {
    std::vector<Display> displays;
};

/** Which display a stream captures. No window is left out of the picture. */
struct ContentFilter {
    MainDisplay display;
};

/** A time of value / timescale seconds. */
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
 * What is asked of a stream. Frames stay in the display's own pixels on the way; `width`, `height`
 * and `pixelFormat` are what a consumer that wants them converted is promised.
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

/** The pointer as it is to be drawn over a frame. */
struct PointerSprite {
    std::uint32_t serial = 0; ///< equal serials, equal images
    QPoint topLeft; ///< of the image, root pixels
    QImage image; ///< premultiplied ARGB
};

enum class SampleType {
    Screen,
    Audio,
};

/** One frame: where the picture is and what of it is new. The pixels stay in the X server. */
struct SampleBuffer {
    std::uint32_t drawable = 0; ///< that holds the picture; an X id
    QRect source; ///< the captured rectangle, pixels of the drawable
    QRegion changed; ///< since the frame before, pixels of the drawable
    std::optional<PointerSprite> pointer; ///< where it touches the source
    std::chrono::steady_clock::time_point time;
};

/**
 * A running capture of one rectangle of a display. Where displays change it goes on with the same
 * points, counted from what is the primary display then, as long as a display shows any of them.
 */
class CaptureStream
{
public:
    struct Handlers {
        /** A frame, on the stream's own thread "captureQueue". */
        std::function<void(SampleBuffer, SampleType)> didOutputSampleBuffer;
        /** The stream ended by itself; on its own thread, which ends right after. */
        std::function<void(Error)> didStopWithError;
    };

    virtual ~CaptureStream() = default;

    /** Blocks until frames flow or the start has failed. Any thread, once. */
    virtual std::expected<void, Error> startCapture(Handlers handlers) = 0;

    /** Blocks until no handler runs any more. Any thread but the stream's own. */
    virtual void stopCapture() = 0;

    /** Takes a frame back that was not shown: what changed in it comes again with the next one. */
    virtual void returnSampleBuffer(const SampleBuffer &sample) = 0;

    /** Makes the next frame a whole one. */
    virtual void invalidate() = 0;
};

} // namespace glimmerpane
