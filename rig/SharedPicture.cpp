// SPDX-License-Identifier: MIT
#include "rig/SharedPicture.h"

#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace glimmerpane::testing
{

Result<SharedPicture> SharedPicture::create(const XClient &client, QSize size)
{
    const auto bytes = static_cast<size_t>(size.width()) * 4 * static_cast<size_t>(size.height());
    const FileDescriptor file(memfd_create("picture", MFD_CLOEXEC));
    if (ftruncate(file.get(), static_cast<off_t>(bytes)) != 0) {
        return failure(QStringLiteral("no memory to share"));
    }
    void *memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        return failure(QStringLiteral("cannot map %1 bytes").arg(bytes));
    }
    SharedPicture picture(memory, bytes, client.newId(), size);
    // xcb closes the descriptor that it sends.
    const auto cookie = xcb_shm_attach_fd_checked(client.connection(), picture.segment_,
                                                  fcntl(file.get(), F_DUPFD_CLOEXEC, 0), 1);
    if (const auto done = client.check(cookie, QStringLiteral("cannot share memory")); !done) {
        return failure(done.error());
    }
    return picture;
}

SharedPicture::SharedPicture(void *memory, size_t bytes, xcb_shm_seg_t segment, QSize size)
    : memory_(memory)
    , bytes_(bytes)
    , segment_(segment)
    , image_(static_cast<uchar *>(memory), size.width(), size.height(), QImage::Format_RGB32)
{
}

SharedPicture::SharedPicture(SharedPicture &&other) noexcept
    : memory_(std::exchange(other.memory_, nullptr))
    , bytes_(other.bytes_)
    , segment_(other.segment_)
    , image_(std::move(other.image_))
{
}

SharedPicture::~SharedPicture()
{
    if (memory_) {
        munmap(memory_, bytes_);
    }
}

void SharedPicture::put(const XClient &client, xcb_drawable_t target, xcb_gcontext_t context,
                        const QRect &part, QPoint at) const
{
    xcb_shm_put_image(client.connection(), target, context, static_cast<uint16_t>(image_.width()),
                      static_cast<uint16_t>(image_.height()), static_cast<uint16_t>(part.x()),
                      static_cast<uint16_t>(part.y()), static_cast<uint16_t>(part.width()),
                      static_cast<uint16_t>(part.height()), static_cast<int16_t>(at.x()),
                      static_cast<int16_t>(at.y()), client.screen().root_depth,
                      XCB_IMAGE_FORMAT_Z_PIXMAP, 1, segment_, 0);
}

} // namespace glimmerpane::testing
