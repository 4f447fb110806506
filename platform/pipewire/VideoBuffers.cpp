// SPDX-License-Identifier: MIT
#include "platform/pipewire/VideoBuffers.h"

#include "platform/pipewire/Metadata.h"

#include <algorithm>
#include <fcntl.h>
#include <pipewire/stream.h>
#include <span>
#include <utility>

namespace glimmerpane::pipewire
{

namespace
{

constexpr std::size_t bytesPerPixel = 4;

/** A buffer on loan. It goes back when the frame and the stream have both let go of it. */
struct Loan {
    std::shared_ptr<const void> memory;
    std::shared_ptr<const MessagePipe> messages;
    std::uint32_t slot = 0;

    Loan(std::shared_ptr<const void> held, std::shared_ptr<const MessagePipe> pipe,
         std::uint32_t number)
        : memory(std::move(held))
        , messages(std::move(pipe))
        , slot(number)
    {
    }
    Loan(const Loan &) = delete;
    Loan &operator=(const Loan &) = delete;
    Loan(Loan &&) = delete;
    Loan &operator=(Loan &&) = delete;
    ~Loan() { messages->send({.kind = Message::Kind::GiveBack, .buffer = slot}); }
};

/** Null if it has no planes of the driver, or no file descriptors are left. */
std::shared_ptr<const DmaBuffer> dmaBuffer(std::span<const spa_data> planes, std::uint64_t modifier,
                                           QSize size)
{
    constexpr std::size_t mostPlanes = 4; // of any format in drm_fourcc.h
    if (planes.empty() || planes.size() > mostPlanes) {
        return nullptr;
    }
    DmaBuffer buffer{.planes = {}, .modifier = modifier, .size = size};
    for (const spa_data &plane : planes) {
        FileDescriptor file(fcntl(static_cast<int>(plane.fd), F_DUPFD_CLOEXEC, 0));
        if (plane.type != SPA_DATA_DmaBuf || file.get() < 0 || plane.chunk->stride <= 0) {
            return nullptr;
        }
        buffer.planes.push_back({.file = std::move(file),
                                 .stride = static_cast<std::uint32_t>(plane.chunk->stride),
                                 .offset = plane.chunk->offset});
    }
    return std::make_shared<const DmaBuffer>(std::move(buffer));
}

} // namespace

VideoBuffers::VideoBuffers(std::shared_ptr<const MessagePipe> messages)
    : messages_(std::move(messages))
{
}

bool VideoBuffers::add(pw_buffer *buffer)
{
    const spa_data &data = buffer->buffer->datas[0];
    const bool isDriver = data.type == SPA_DATA_DmaBuf;
    auto memory = isDriver ? nullptr : BufferMapping::create(data);
    if (!memory && !isDriver) {
        return false;
    }
    slots_[++latest_] = {.buffer = buffer, .memory = std::move(memory), .driver = {}};
    return true;
}

void VideoBuffers::remove(pw_buffer *buffer)
{
    std::erase_if(slots_, [buffer](const auto &slot) { return slot.second.buffer == buffer; });
}

pw_buffer *VideoBuffers::find(std::uint32_t number) const
{
    const auto slot = slots_.find(number);
    return slot != slots_.end() ? slot->second.buffer : nullptr;
}

std::optional<BufferPicture> VideoBuffers::picture(const pw_buffer &buffer, QSize size,
                                                   std::optional<std::uint64_t> modifier)
{
    const auto found = std::ranges::find_if(
        slots_, [&](const auto &each) { return each.second.buffer == &buffer; });
    const QRect crop = cropOf(*buffer.buffer, size);
    if (found == slots_.end() || crop.isEmpty()) {
        return std::nullopt;
    }
    auto &[number, slot] = *found;
    if (slot.memory) {
        return mapped(*buffer.buffer, number, slot, crop);
    }
    if (!slot.driver && modifier) {
        slot.driver = dmaBuffer({buffer.buffer->datas, buffer.buffer->n_datas}, *modifier, size);
    }
    return slot.driver ? std::optional(driven(number, slot, crop)) : std::nullopt;
}

/** The part of the buffer that the sender means. */
std::optional<BufferPicture> VideoBuffers::mapped(const spa_buffer &buffer, std::uint32_t number,
                                                  const Slot &slot, QRect crop) const
{
    const spa_chunk &chunk = *buffer.datas[0].chunk;
    if (chunk.stride <= 0) {
        return std::nullopt;
    }
    const auto bytes = slot.memory->bytes();
    const auto stride = static_cast<std::size_t>(chunk.stride);
    const std::size_t start = chunk.offset + static_cast<std::size_t>(crop.y()) * stride
        + static_cast<std::size_t>(crop.x()) * bytesPerPixel;
    const std::size_t length = static_cast<std::size_t>(crop.height() - 1) * stride
        + static_cast<std::size_t>(crop.width()) * bytesPerPixel;
    if (start > bytes.size() || length > bytes.size() - start) {
        return std::nullopt;
    }
    auto owner = std::make_shared<const Loan>(slot.memory, messages_, number);
    return BufferPicture{.pixels = MappedPixels{.data = bytes.data() + start,
                                                .stride = chunk.stride,
                                                .size = crop.size(),
                                                .owner = std::move(owner),
                                                .file = slot.memory->file(),
                                                .offset = slot.memory->fileOffset() + start},
                         .bounds = {QPoint(), crop.size()},
                         .origin = crop.topLeft()};
}

/** The whole buffer, as only whole ones can be handed on. */
BufferPicture VideoBuffers::driven(std::uint32_t number, const Slot &slot, QRect crop) const
{
    auto owner = std::make_shared<const Loan>(slot.driver, messages_, number);
    const auto refuse = [to = messages_] { to->send({.kind = Message::Kind::UseMemory}); };
    return {.pixels
            = DmaPicture{.buffer = slot.driver, .owner = std::move(owner), .refuse = refuse},
            .bounds = crop,
            .origin = {}};
}

} // namespace glimmerpane::pipewire
