// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <algorithm>
#include <xcb/xfixes.h>

namespace glimmerpane::testing
{

/** The pointer as the display shows it. */
struct CursorPicture {
    QImage image; ///< Format_ARGB32_Premultiplied
    QPoint topLeft; ///< of the image, root pixels
};

inline Result<CursorPicture> currentCursor(const XClient &client)
{
    const auto reply = ask<xcb_xfixes_get_cursor_image, xcb_xfixes_get_cursor_image_reply>(client);
    if (!reply) {
        return failure(QStringLiteral("the server shows no cursor"));
    }
    QImage image(reply->width, reply->height, QImage::Format_ARGB32_Premultiplied);
    std::memcpy(image.bits(), xcb_xfixes_get_cursor_image_cursor_image(reply.get()),
                static_cast<size_t>(image.sizeInBytes()));
    return CursorPicture{.image = image,
                         .topLeft = {reply->x - reply->xhot, reply->y - reply->yhot}};
}

/**
 * A premultiplied pixel over another one, as the server's Render extension does it: x * a / 255 is
 * rounded and sums saturate.
 */
inline QRgb blend(QRgb source, QRgb destination)
{
    QRgb result = 0xff000000U;
    for (const int shift : {0, 8, 16}) {
        const QRgb product = ((destination >> shift) & 0xffU) * (255U - (source >> 24)) + 0x80U;
        const QRgb sum = ((source >> shift) & 0xffU) + ((product + (product >> 8)) >> 8);
        result |= std::min(255U, sum) << shift;
    }
    return result;
}

/**
 * The picture with the pointer painted over it. `origin` is the root position of the picture's
 * top-left pixel.
 */
inline QImage withCursor(QImage picture, QPoint origin, const CursorPicture &cursor)
{
    for (int y = 0; y < cursor.image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(cursor.image.constScanLine(y));
        for (int x = 0; x < cursor.image.width(); ++x) {
            const QPoint place = cursor.topLeft - origin + QPoint(x, y);
            if (picture.valid(place)) {
                picture.setPixel(place, blend(line[x], picture.pixel(place)));
            }
        }
    }
    return picture;
}

} // namespace glimmerpane::testing
