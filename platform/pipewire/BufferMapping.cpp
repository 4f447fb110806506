// SPDX-License-Identifier: MIT
#include "platform/pipewire/BufferMapping.h"

#include <spa/buffer/buffer.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimmerpane::pipewire
{

std::shared_ptr<const BufferMapping> BufferMapping::create(const spa_data &data)
{
    const auto file = static_cast<int>(data.fd);
    struct stat status{};
    if (data.type != SPA_DATA_MemFd || fstat(file, &status) != 0
        || status.st_size < std::int64_t{data.mapoffset} + data.maxsize) {
        return nullptr;
    }
    const std::size_t offset = data.mapoffset % std::size_t(sysconf(_SC_PAGESIZE));
    const std::size_t size = offset + data.maxsize;
    void *const start = mmap(nullptr, size, PROT_READ, MAP_SHARED, file,
                             static_cast<off_t>(data.mapoffset - offset));
    if (start == MAP_FAILED) {
        return nullptr;
    }
    return std::make_shared<const BufferMapping>(std::span(static_cast<std::byte *>(start), size),
                                                 offset);
}

BufferMapping::~BufferMapping()
{
    munmap(mapping_.data(), mapping_.size());
}

} // namespace glimmerpane::pipewire
