// SPDX-License-Identifier: MIT
#include "platform/x11/LentPictures.h"

#include "platform/Log.h"
#include "platform/x11/Coordinates.h"

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

constexpr std::ptrdiff_t bytesPerPixel = 4;

/** Whether the server can read all rows of the pixels by its own means. */
bool isReadable(const MappedPixels &pixels)
{
    const std::ptrdiff_t rowLength = pixels.stride / bytesPerPixel;
    if (!pixels.file || pixels.size.isEmpty() || pixels.stride % bytesPerPixel != 0
        || rowLength < pixels.size.width() || rowLength > std::numeric_limits<std::uint16_t>::max()
        || pixels.offset % bytesPerPixel != 0
        || pixels.offset > std::numeric_limits<std::uint32_t>::max()) {
        return false;
    }
    const auto bytes
        = static_cast<std::size_t>(pixels.stride) * static_cast<std::size_t>(pixels.size.height());
    return pixels.offset <= pixels.file->size && bytes <= pixels.file->size - pixels.offset;
}

} // namespace

Lending lendingOf(const Connection &connection)
{
    const auto *const extension = xcb_get_extension_data(connection.get(), &xcb_shm_id);
    if (extension == nullptr || extension->present == 0 || !connection.takesFiles()) {
        return Lending::Never;
    }
    const Reply<xcb_shm_query_version_reply_t> version(xcb_shm_query_version_reply(
        connection.get(), xcb_shm_query_version(connection.get()), nullptr));
    if (!version || version->major_version != 1 || version->minor_version < 2) {
        return Lending::Never;
    }
    // Some servers draw by means that cannot use shared pixmaps, and say so.
    return version->shared_pixmaps != 0 && version->pixmap_format == XCB_IMAGE_FORMAT_Z_PIXMAP
        ? Lending::AsPixmaps
        : Lending::ByRequest;
}

void put(const Connection &connection, const LentPicture &picture, QRect part,
         xcb_drawable_t target, xcb_gcontext_t context, QPoint at)
{
    const QRect available = part & QRect(QPoint(), picture.size);
    if (available.isEmpty()) {
        return;
    }
    const QPoint place = at + available.topLeft() - part.topLeft();
    xcb_shm_put_image(connection.get(), target, context, picture.rowLength,
                      extent(picture.size.height()), extent(available.x()), extent(available.y()),
                      extent(available.width()), extent(available.height()), coordinate(place.x()),
                      coordinate(place.y()), connection.screen().root_depth,
                      XCB_IMAGE_FORMAT_Z_PIXMAP, 0, picture.segment, picture.offset);
}

std::optional<LentPicture> LentPictures::lend(const Connection &connection,
                                              const MappedPixels &pixels)
{
    if (most_ == Lending::Never || !isReadable(pixels)) {
        return std::nullopt;
    }
    const auto known = mapped(connection, pixels);
    if (!known) {
        qCInfo(platformLog, "pictures are copied for the server: %s",
               qPrintable(known.error().log));
        return std::nullopt;
    }
    describe(connection, **known, pixels);
    return (*known)->picture;
}

std::expected<LentPictures::Mapped *, Error> LentPictures::mapped(const Connection &connection,
                                                                  const MappedPixels &pixels)
{
    const auto known = std::ranges::find_if(
        mapped_, [&](const Mapped &each) { return each.file.lock() == pixels.file; });
    if (known != mapped_.end()) {
        return &*known;
    }
    forgetWithdrawn();
    FileDescriptor file(fcntl(pixels.file->descriptor.get(), F_DUPFD_CLOEXEC, 0));
    if (file.get() < 0) {
        return std::unexpected(
            Error{.text = {}, .log = QStringLiteral("no file descriptors are left")});
    }
    // The server makes pixmaps only of memory that it may write. xcb closes what it sends.
    const bool isReadOnly = most_ != Lending::AsPixmaps || !pixels.file->isWritable;
    const auto id = connection.newId();
    const auto attach = isProven_ ? xcb_shm_attach_fd : xcb_shm_attach_fd_checked;
    const auto attached
        = attach(connection.get(), id, file.release(), static_cast<std::uint8_t>(isReadOnly));
    if (!std::exchange(isProven_, true)) {
        if (auto result = connection.check(attached, "ShmAttachFd"); !result) {
            refused();
            return std::unexpected(result.error());
        }
    }
    mapped_.push_back({.file = pixels.file,
                       .segment = SharedSegment(connection, id),
                       .pixmap = {},
                       .picture = {}});
    return &mapped_.back();
}

/** Notes which part of the memory is the picture, and makes it a pixmap if that can be. */
void LentPictures::describe(const Connection &connection, Mapped &mapped,
                            const MappedPixels &pixels) const
{
    const auto rowLength = extent(static_cast<int>(pixels.stride / bytesPerPixel));
    LentPicture picture{.segment = mapped.segment.get(),
                        .offset = static_cast<std::uint32_t>(pixels.offset),
                        .rowLength = rowLength,
                        .size = pixels.size,
                        .pixmap = mapped.pixmap.get()};
    if (std::exchange(mapped.picture, picture) == picture) {
        return;
    }
    mapped.pixmap = {};
    // The server takes it that a pixmap's rows follow each other without a gap.
    if (most_ == Lending::AsPixmaps && pixels.file->isWritable
        && rowLength == pixels.size.width()) {
        const auto id = connection.newId();
        xcb_shm_create_pixmap(connection.get(), id, connection.root(), rowLength,
                              extent(pixels.size.height()), connection.screen().root_depth,
                              picture.segment, picture.offset);
        mapped.pixmap = Pixmap(connection, id);
    }
    mapped.picture.pixmap = mapped.pixmap.get();
}

void LentPictures::forgetWithdrawn()
{
    std::erase_if(mapped_, [](const Mapped &each) { return each.file.expired(); });
}

} // namespace glimmerpane::x11
