// SPDX-License-Identifier: MIT
#include "tests/support/CursorPicture.h"

#include <algorithm>
#include <cstring>
#include <xcb/xfixes.h>

namespace glimmerpane::testing
{

namespace
{

/**
 * One channel of "source over destination" with a premultiplied source: x * a / 255, rounded,
 * and the saturated sum.
 */
uint32_t blendChannel(uint32_t source, uint32_t destination, uint32_t inverseAlpha)
{
    const uint32_t product = destination * inverseAlpha + 0x80;
    return std::min(255U, source + ((product + (product >> 8)) >> 8));
}

QRgb blend(QRgb source, QRgb destination)
{
    const auto inverse = static_cast<uint32_t>(255 - qAlpha(source));
    uint32_t result = 0xff000000U;
    for (const int shift : {0, 8, 16}) {
        result |= blendChannel((source >> shift) & 0xff, (destination >> shift) & 0xff, inverse)
            << shift;
    }
    return result;
}

} // namespace

Result<CursorPicture> currentCursor(const XClient &client)
{
    auto *connection = client.connection();
    const auto cookie = xcb_xfixes_get_cursor_image_and_name(connection);
    const Reply<xcb_xfixes_get_cursor_image_and_name_reply_t> reply(
        xcb_xfixes_get_cursor_image_and_name_reply(connection, cookie, nullptr));
    if (!reply) {
        return failure(QStringLiteral("the server shows no cursor"));
    }
    CursorPicture cursor{.image
                         = QImage(reply->width, reply->height, QImage::Format_ARGB32_Premultiplied),
                         .hotspot = QPoint(reply->xhot, reply->yhot),
                         .position = QPoint(reply->x, reply->y),
                         .serial = reply->cursor_serial,
                         .name = {}};
    std::memcpy(cursor.image.bits(), xcb_xfixes_get_cursor_image_and_name_cursor_image(reply.get()),
                size_t{reply->width} * reply->height * 4);
    cursor.name = QString::fromLatin1(xcb_xfixes_get_cursor_image_and_name_name(reply.get()),
                                      reply->nbytes);
    return cursor;
}

QImage withCursor(const QImage &picture, QPoint origin, const CursorPicture &cursor)
{
    QImage result = picture.convertToFormat(QImage::Format_RGB32);
    const QRect place = cursor.rectangle().translated(-origin);
    const QRect visible = place & result.rect();
    for (int y = visible.top(); y < visible.top() + visible.height(); ++y) {
        const auto *source
            = reinterpret_cast<const QRgb *>(cursor.image.constScanLine(y - place.top()));
        auto *destination = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = visible.left(); x < visible.left() + visible.width(); ++x) {
            destination[x] = blend(source[x - place.left()], destination[x]);
        }
    }
    return result;
}

} // namespace glimmerpane::testing
