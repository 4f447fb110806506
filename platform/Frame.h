// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace glimmerpane
{

/** A picture that stays in the display server; the frame does not own it. */
struct ServerDrawable {
    std::uint32_t id = 0;
};

/** Memory in a file that cannot shrink, so that the display server can map it safely, too. */
struct MemoryFile {
    FileDescriptor descriptor;
    std::size_t size = 0; ///< bytes
    bool isWritable = false; ///< for those who map it
};

/** Pixels in memory: 32 bits each, blue in the lowest byte, the highest one unused. */
struct MappedPixels {
    const std::byte *data = nullptr; ///< the top-left pixel
    std::ptrdiff_t stride = 0; ///< bytes from one row to the next
    QSize size;
    std::shared_ptr<const void> owner; ///< gives the memory back when the last copy goes
    std::shared_ptr<const MemoryFile> file{}; ///< holds the memory; null if it cannot be handed on
    std::size_t offset = 0; ///< of the top-left pixel in the file, bytes
};

/** A buffer of the graphics driver (DMA-BUF), with pixels as in MappedPixels. */
struct DmaBuffer {
    struct Plane {
        FileDescriptor file;
        std::uint32_t stride = 0; ///< bytes
        std::uint32_t offset = 0; ///< bytes
    };

    std::vector<Plane> planes; ///< one to four
    std::uint64_t modifier = 0; ///< the planes' layout, as in drm_fourcc.h
    QSize size;
};

/** A picture in such a buffer. */
struct DmaPicture {
    std::shared_ptr<const DmaBuffer> buffer; ///< the same one for all pictures in it
    std::shared_ptr<const void> owner; ///< gives the buffer back when the last copy goes
    /** For a display server that cannot read it: memory is used from now on. Any thread. */
    std::function<void()> refuse;
};

/** The previous frame's picture, for frames in which only the pointer is new. */
struct SamePicture {
};

using FramePicture = std::variant<ServerDrawable, MappedPixels, DmaPicture, SamePicture>;

/** The pointer to draw over a frame. */
struct PointerSprite {
    std::uint32_t serial = 0; ///< equal serials mean equal images
    QPoint topLeft; ///< of the image, pixels of the frame's picture
    QImage image; ///< premultiplied ARGB
};

/** One frame: where the picture is and which part of it is new. */
struct SampleBuffer {
    FramePicture picture;
    QRect source; ///< the captured rectangle, pixels of the picture
    QRegion changed; ///< since the previous frame, pixels of the picture
    std::optional<PointerSprite> pointer; ///< if it touches the source
    std::chrono::steady_clock::time_point time;
};

} // namespace glimmerpane
