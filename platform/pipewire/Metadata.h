// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <optional>

struct spa_buffer;

namespace glimmerpane::pipewire
{

// What a buffer says besides its pixels. All coordinates are pixels of the buffer.

/** The part that is picture; everything if the sender says nothing. */
QRect cropOf(const spa_buffer &buffer, QSize size);

/** What has changed since the previous buffer; everything if the sender says nothing. */
QRegion damageOf(const spa_buffer &buffer, QSize size);

/** Whether the pixels are to be ignored, as in a buffer that tells only of the pointer. */
bool isWithoutPicture(const spa_buffer &buffer);

/** What a buffer says about the pointer. */
struct PointerNews {
    bool isShown = false;
    QPoint position; ///< of the hotspot
    QPoint hotspot; ///< in the image, if there is a new one
    std::optional<QImage> image; ///< premultiplied ARGB; absent if it is the same as before
};

/** Null if the sender does not say. */
std::optional<PointerNews> pointerNews(const spa_buffer &buffer);

} // namespace glimmerpane::pipewire
