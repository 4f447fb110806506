// SPDX-License-Identifier: MIT
#include "platform/pipewire/Metadata.h"

#include <spa/buffer/buffer.h>
#include <spa/buffer/meta.h>
#include <spa/param/video/raw.h>

#include <array>

namespace glimmerpane::pipewire
{

namespace
{

template<typename T>
const T *find(const spa_buffer &buffer, spa_meta_type type)
{
    return static_cast<const T *>(spa_buffer_find_meta_data(&buffer, type, sizeof(T)));
}

QRect rectangleOf(const spa_region &region)
{
    return {region.position.x, region.position.y, static_cast<int>(region.size.width),
            static_cast<int>(region.size.height)};
}

QImage::Format imageFormat(std::uint32_t format)
{
    switch (format) {
    case SPA_VIDEO_FORMAT_RGBA:
        return QImage::Format_RGBA8888_Premultiplied;
    case SPA_VIDEO_FORMAT_BGRA:
        return QImage::Format_ARGB32_Premultiplied; // little-endian
    default:
        return QImage::Format_Invalid;
    }
}

/** A copy of the bitmap that starts at `offset`. Empty if there is none or it does not fit. */
QImage bitmapAt(const spa_meta &meta, std::size_t offset)
{
    if (offset + sizeof(spa_meta_bitmap) > meta.size) {
        return {};
    }
    const auto *const start = static_cast<const uchar *>(meta.data) + offset;
    const auto &bitmap = *reinterpret_cast<const spa_meta_bitmap *>(start);
    const auto &[width, height] = bitmap.size;
    const std::size_t end
        = offset + bitmap.offset + std::size_t{height} * std::size_t(bitmap.stride);
    constexpr std::uint32_t largest = 1024; // pixels; more than any pointer has
    const QImage::Format format = imageFormat(bitmap.format);
    if (width == 0 || height == 0 || width > largest || height > largest || bitmap.offset == 0
        || bitmap.stride < static_cast<int>(4 * width) || end > meta.size
        || format == QImage::Format_Invalid) {
        return {};
    }
    return QImage(start + bitmap.offset, static_cast<int>(width), static_cast<int>(height),
                  bitmap.stride, format)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .copy();
}

} // namespace

QRect cropOf(const spa_buffer &buffer, QSize size)
{
    const QRect whole(QPoint(), size);
    const auto *const crop = find<spa_meta_region>(buffer, SPA_META_VideoCrop);
    return crop != nullptr && spa_meta_region_is_valid(crop) ? rectangleOf(crop->region) & whole
                                                             : whole;
}

QRegion damageOf(const spa_buffer &buffer, QSize size)
{
    const QRect whole(QPoint(), size);
    const spa_meta *const meta = spa_buffer_find_meta(&buffer, SPA_META_VideoDamage);
    if (meta == nullptr) {
        return whole;
    }
    QRegion damage;
    const auto *const regions = static_cast<const spa_meta_region *>(meta->data);
    for (std::size_t i = 0; i < meta->size / sizeof(spa_meta_region); ++i) {
        if (!spa_meta_region_is_valid(&regions[i])) {
            break;
        }
        damage |= rectangleOf(regions[i].region);
    }
    return damage.isEmpty() ? whole : damage & whole;
}

bool isWithoutPicture(const spa_buffer &buffer)
{
    const auto *const header = find<spa_meta_header>(buffer, SPA_META_Header);
    const spa_chunk &chunk = *buffer.datas[0].chunk;
    return chunk.size == 0 || (chunk.flags & SPA_CHUNK_FLAG_CORRUPTED) != 0
        || (header != nullptr && (header->flags & SPA_META_HEADER_FLAG_CORRUPTED) != 0);
}

std::optional<PointerNews> pointerNews(const spa_buffer &buffer)
{
    const spa_meta *const meta = spa_buffer_find_meta(&buffer, SPA_META_Cursor);
    if (meta == nullptr || meta->size < sizeof(spa_meta_cursor)) {
        return std::nullopt;
    }
    const auto &cursor = *static_cast<const spa_meta_cursor *>(meta->data);
    PointerNews news{.isShown = cursor.id != 0,
                     .position = {cursor.position.x, cursor.position.y},
                     .hotspot = {cursor.hotspot.x, cursor.hotspot.y},
                     .image = {}};
    if (news.isShown && cursor.bitmap_offset >= sizeof(spa_meta_cursor)) {
        news.image = bitmapAt(*meta, cursor.bitmap_offset);
    }
    return news;
}

} // namespace glimmerpane::pipewire
