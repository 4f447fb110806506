// SPDX-License-Identifier: MIT
#include "platform/pipewire/BufferMapping.h"

#include "platform/Frame.h"

#include <fcntl.h>
#include <linux/memfd.h>
#include <spa/buffer/buffer.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimmerpane::pipewire
{

namespace
{

/** Null if the file can shrink: whoever has mapped it, such as the display server, would die. */
std::shared_ptr<const MemoryFile> fileToHandOn(int file, std::size_t size)
{
    const int seals = fcntl(file, F_GET_SEALS);
    const int flags = fcntl(file, F_GETFL);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0 || flags < 0) {
        return nullptr;
    }
    FileDescriptor own(fcntl(file, F_DUPFD_CLOEXEC, 0));
    if (own.get() < 0) {
        return nullptr;
    }
    const bool isWritable
        = (flags & O_ACCMODE) == O_RDWR && (seals & (F_SEAL_WRITE | F_SEAL_FUTURE_WRITE)) == 0;
    return std::make_shared<const MemoryFile>(std::move(own), size, isWritable);
}

} // namespace

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
    return std::make_shared<const BufferMapping>(
        std::span(static_cast<std::byte *>(start), size), offset,
        fileToHandOn(file, static_cast<std::size_t>(status.st_size)), data.mapoffset);
}

BufferMapping::~BufferMapping()
{
    munmap(mapping_.data(), mapping_.size());
}

} // namespace glimmerpane::pipewire
