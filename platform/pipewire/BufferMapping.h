// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>

struct spa_data;

namespace glimmerpane::pipewire
{

/**
 * A buffer's memory, mapped for reading. It stays until the last user has gone, even if the sender
 * withdraws the buffer meanwhile, which it does when the picture's size changes.
 */
class BufferMapping
{
public:
    /** Null if the memory has no file descriptor, or cannot be mapped. */
    static std::shared_ptr<const BufferMapping> create(const spa_data &data);

    /** `offset` is where the buffer's bytes begin in the mapping. */
    BufferMapping(std::span<std::byte> mapping, std::size_t offset)
        : mapping_(mapping)
        , bytes_(mapping.subspan(offset))
    {
    }
    BufferMapping(const BufferMapping &) = delete;
    BufferMapping &operator=(const BufferMapping &) = delete;
    BufferMapping(BufferMapping &&) = delete;
    BufferMapping &operator=(BufferMapping &&) = delete;
    ~BufferMapping();

    std::span<const std::byte> bytes() const { return bytes_; }

private:
    std::span<std::byte> mapping_;
    std::span<const std::byte> bytes_;
};

} // namespace glimmerpane::pipewire
