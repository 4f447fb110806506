// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>

struct spa_data;

namespace glimmerpane
{
struct MemoryFile;
}

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

    /** `offset` is where the buffer's bytes begin in the mapping; for `file` see file(). */
    BufferMapping(std::span<std::byte> mapping, std::size_t offset,
                  std::shared_ptr<const MemoryFile> file, std::size_t fileOffset)
        : mapping_(mapping)
        , bytes_(mapping.subspan(offset))
        , file_(std::move(file))
        , fileOffset_(fileOffset)
    {
    }
    BufferMapping(const BufferMapping &) = delete;
    BufferMapping &operator=(const BufferMapping &) = delete;
    BufferMapping(BufferMapping &&) = delete;
    BufferMapping &operator=(BufferMapping &&) = delete;
    ~BufferMapping();

    std::span<const std::byte> bytes() const { return bytes_; }
    /** For others to map; null if the sender could shrink it under them. */
    const std::shared_ptr<const MemoryFile> &file() const { return file_; }
    /** Where bytes() begin in the file. */
    std::size_t fileOffset() const { return fileOffset_; }

private:
    std::span<std::byte> mapping_;
    std::span<const std::byte> bytes_;
    std::shared_ptr<const MemoryFile> file_;
    std::size_t fileOffset_ = 0;
};

} // namespace glimmerpane::pipewire
