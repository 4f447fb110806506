// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wlroots/ScreencopySession.h"

#include <QImage>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace glimmerpane::wlroots
{

/** What the compositor wants of a buffer. */
struct BufferLayout {
    std::uint32_t format = 0; ///< of wl_shm
    QSize size; ///< pixels
    std::uint32_t stride = 0; ///< bytes

    std::size_t bytes() const { return std::size_t{stride} * std::size_t(size.height()); }

    friend bool operator==(const BufferLayout &, const BufferLayout &) = default;
};

/** The format as Qt knows it; null for one that cannot be shown. */
std::optional<QImage::Format> imageFormat(std::uint32_t format);

struct UnmapMemory {
    std::size_t bytes = 0;
    void operator()(std::byte *memory) const;
};

/** Memory that the compositor writes pictures into. */
class SharedBuffer
{
public:
    using Memory = std::unique_ptr<std::byte, UnmapMemory>;

    /** Null if there is not enough memory. */
    static std::optional<SharedBuffer> create(wl_shm *sharedMemory, const BufferLayout &layout);

    wl_buffer *proxy() const { return proxy_.get(); }
    const BufferLayout &layout() const { return layout_; }

    /** Stays mapped as long as somebody holds it. */
    const std::shared_ptr<Memory> &memory() const { return memory_; }

    /** Whether nobody else holds the memory. */
    bool isFree() const { return memory_.use_count() == 1; }

private:
    BufferLayout layout_;
    std::shared_ptr<Memory> memory_;
    WaylandObject<wl_buffer> proxy_;
};

} // namespace glimmerpane::wlroots
