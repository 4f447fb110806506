// SPDX-License-Identifier: MIT
#include "platform/wlroots/SharedBuffer.h"

#include "platform/FileDescriptor.h"

#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace glimmerpane::wlroots
{

std::optional<QImage::Format> imageFormat(std::uint32_t format)
{
    // Renderers offer the layout that they read back at no cost. Alpha means nothing on a screen.
    switch (format) {
    case WL_SHM_FORMAT_XRGB8888:
    case WL_SHM_FORMAT_ARGB8888:
        return QImage::Format_RGB32;
    case WL_SHM_FORMAT_XBGR8888:
    case WL_SHM_FORMAT_ABGR8888:
        return QImage::Format_RGBX8888;
    case WL_SHM_FORMAT_XRGB2101010:
    case WL_SHM_FORMAT_ARGB2101010:
        return QImage::Format_RGB30;
    case WL_SHM_FORMAT_XBGR2101010:
    case WL_SHM_FORMAT_ABGR2101010:
        return QImage::Format_BGR30;
    default:
        return std::nullopt;
    }
}

void UnmapMemory::operator()(std::byte *memory) const
{
    munmap(memory, bytes);
}

std::optional<SharedBuffer> SharedBuffer::create(wl_shm *sharedMemory, const BufferLayout &layout)
{
    const std::size_t bytes = layout.bytes();
    const FileDescriptor file(memfd_create("glimmerpane", MFD_CLOEXEC));
    if (bytes == 0 || bytes > INT32_MAX // the protocol has no larger pools
        || ftruncate(file.get(), static_cast<off_t>(bytes)) != 0) {
        return std::nullopt;
    }
    void *const memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        return std::nullopt;
    }
    SharedBuffer buffer;
    buffer.layout_ = layout;
    buffer.memory_ = std::make_shared<Memory>(static_cast<std::byte *>(memory), UnmapMemory{bytes});
    const WaylandObject<wl_shm_pool> pool(
        wl_shm_create_pool(sharedMemory, file.get(), static_cast<std::int32_t>(bytes)));
    buffer.proxy_.reset(
        wl_shm_pool_create_buffer(pool.get(), 0, layout.size.width(), layout.size.height(),
                                  static_cast<std::int32_t>(layout.stride), layout.format));
    return buffer;
}

} // namespace glimmerpane::wlroots
