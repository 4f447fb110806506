// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/pipewire/BufferMapping.h"
#include "platform/pipewire/MessagePipe.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

struct pw_buffer;
struct spa_buffer;

namespace glimmerpane::pipewire
{

/** What a buffer shows. */
struct BufferPicture {
    FramePicture pixels;
    QRect bounds; ///< what the sender means to show, pixels of the picture
    QPoint origin; ///< of the picture, in the buffer
};

/**
 * A sender's buffers, in memory or the graphics driver's. A picture lends its buffer: when the last
 * copy has gone, the pipe carries the buffer's number back. Used by the stream's thread.
 */
class VideoBuffers
{
public:
    explicit VideoBuffers(std::shared_ptr<const MessagePipe> messages);

    /** False if it cannot be read. */
    bool add(pw_buffer *buffer);
    void remove(pw_buffer *buffer);
    /** Null if the sender has withdrawn it. */
    pw_buffer *find(std::uint32_t number) const;

    /**
     * Null if the buffer holds less than a whole picture. `size` is the agreed one, in pixels; the
     * driver's buffers have the agreed `modifier` of drm_fourcc.h.
     */
    std::optional<BufferPicture> picture(const pw_buffer &buffer, QSize size,
                                         std::optional<std::uint64_t> modifier);

private:
    struct Slot {
        pw_buffer *buffer = nullptr;
        std::shared_ptr<const BufferMapping> memory; ///< null for the driver's
        std::shared_ptr<const DmaBuffer> driver; ///< null for memory, and before the first picture
    };

    std::optional<BufferPicture> mapped(const spa_buffer &buffer, std::uint32_t number,
                                        const Slot &slot, QRect crop) const;
    BufferPicture driven(std::uint32_t number, const Slot &slot, QRect crop) const;

    const std::shared_ptr<const MessagePipe> messages_;
    std::map<std::uint32_t, Slot> slots_; ///< by numbers of our own
    std::uint32_t latest_ = 0;
};

} // namespace glimmerpane::pipewire
