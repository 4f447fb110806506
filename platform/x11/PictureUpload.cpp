// SPDX-License-Identifier: MIT
#include "platform/x11/PictureUpload.h"

#include "platform/x11/Render.h"

#include <cstring>

namespace glimmerpane::x11
{

namespace
{

constexpr std::size_t bytesPerPixel = 4;

} // namespace

std::expected<PictureUpload, Error> PictureUpload::create(const Connection &connection, QSize size,
                                                          xcb_gcontext_t context,
                                                          bool hasSharedPixmaps)
{
    const auto bytes = static_cast<std::size_t>(size.width())
        * static_cast<std::size_t>(size.height()) * bytesPerPixel;
    auto memory = SharedMemory::create(connection, bytes);
    if (!memory) {
        return std::unexpected(memory.error());
    }
    PictureUpload upload;
    upload.size_ = size;
    upload.memory_ = std::move(*memory);
    upload.context_ = context;
    upload.isMemoryThePixmap_ = hasSharedPixmaps;
    const auto id = connection.newId();
    const auto depth = connection.screen().root_depth;
    if (upload.isMemoryThePixmap_) {
        xcb_shm_create_pixmap(connection.get(), id, connection.root(), extent(size.width()),
                              extent(size.height()), depth, upload.memory_.segment(), 0);
    } else {
        xcb_create_pixmap(connection.get(), depth, id, connection.root(), extent(size.width()),
                          extent(size.height()));
    }
    upload.pixmap_ = Pixmap(connection, id);
    return upload;
}

void PictureUpload::update(const Connection &connection, const MappedPixels &pixels,
                           const QRegion &changed)
{
    const std::size_t stride = static_cast<std::size_t>(size_.width()) * bytesPerPixel;
    const QRect available(QPoint(), pixels.size.boundedTo(size_));
    for (const QRect &part : changed &available) {
        const std::size_t left = static_cast<std::size_t>(part.x()) * bytesPerPixel;
        const std::size_t width = static_cast<std::size_t>(part.width()) * bytesPerPixel;
        for (int y = part.y(); y < part.y() + part.height(); ++y) {
            std::memcpy(memory_.data() + static_cast<std::size_t>(y) * stride + left,
                        pixels.data + y * pixels.stride + left, width);
        }
        if (!isMemoryThePixmap_) {
            xcb_shm_put_image(connection.get(), pixmap_.get(), context_, extent(size_.width()),
                              extent(size_.height()), extent(part.x()), extent(part.y()),
                              extent(part.width()), extent(part.height()), coordinate(part.x()),
                              coordinate(part.y()), connection.screen().root_depth,
                              XCB_IMAGE_FORMAT_Z_PIXMAP, 0, memory_.segment(), 0);
        }
    }
}

} // namespace glimmerpane::x11
