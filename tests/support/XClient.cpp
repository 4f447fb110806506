// SPDX-License-Identifier: MIT
#include "tests/support/XClient.h"

#include <cstring>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/res.h>
#include <xcb/xfixes.h>

namespace glimmerpane::testing
{

namespace
{

const xcb_screen_t *screenOf(xcb_connection_t *connection, int number)
{
    auto iterator = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && iterator.rem > 1; --number) {
        xcb_screen_next(&iterator);
    }
    return iterator.data;
}

/** The server refuses an extension's requests until its version was asked for. */
bool announceExtensions(xcb_connection_t *connection)
{
    for (xcb_extension_t *extension :
         {&xcb_xfixes_id, &xcb_composite_id, &xcb_damage_id, &xcb_res_id}) {
        const auto *data = xcb_get_extension_data(connection, extension);
        if (!data || !data->present) {
            return false;
        }
    }
    const auto fixes = xcb_xfixes_query_version(connection, 5, 0);
    const auto composite = xcb_composite_query_version(connection, 0, 4);
    const auto damage = xcb_damage_query_version(connection, 1, 1);
    const auto resources = xcb_res_query_version(connection, 1, 2);
    const Reply<void> replies[]
        = {Reply<void>(xcb_xfixes_query_version_reply(connection, fixes, nullptr)),
           Reply<void>(xcb_composite_query_version_reply(connection, composite, nullptr)),
           Reply<void>(xcb_damage_query_version_reply(connection, damage, nullptr)),
           Reply<void>(xcb_res_query_version_reply(connection, resources, nullptr))};
    for (const auto &reply : replies) {
        if (!reply) {
            return false;
        }
    }
    return true;
}

QString describe(const QRect &rectangle)
{
    return QStringLiteral("%1x%2+%3+%4")
        .arg(rectangle.width())
        .arg(rectangle.height())
        .arg(rectangle.x())
        .arg(rectangle.y());
}

} // namespace

Result<XClient> XClient::connect(const QString &displayName)
{
    int screenNumber = 0;
    Connection connection(xcb_connect(displayName.toLocal8Bit().constData(), &screenNumber));
    if (xcb_connection_has_error(connection.get())) {
        return failure(QStringLiteral("cannot connect to display %1").arg(displayName));
    }
    if (!announceExtensions(connection.get())) {
        return failure(QStringLiteral("display %1 lacks an extension").arg(displayName));
    }
    const auto *screen = screenOf(connection.get(), screenNumber);
    return XClient(std::move(connection), screen);
}

xcb_atom_t XClient::atom(const QByteArray &name) const
{
    const auto cookie
        = xcb_intern_atom(connection(), 0, static_cast<uint16_t>(name.size()), name.constData());
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection(), cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void XClient::sync() const
{
    const auto cookie = xcb_get_input_focus(connection());
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection(), cookie, nullptr));
}

Result<void> XClient::check(xcb_void_cookie_t cookie, const QString &text) const
{
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection(), cookie));
    if (error) {
        return failure(QStringLiteral("%1 (X error %2)").arg(text).arg(error->error_code));
    }
    if (isBroken()) {
        return failure(QStringLiteral("%1 (connection lost)").arg(text));
    }
    return {};
}

Result<QImage> XClient::screenshot(const QRect &rectangle) const
{
    return image(root(), rectangle);
}

Result<QImage> XClient::image(xcb_drawable_t drawable, const QRect &rectangle) const
{
    const auto cookie = xcb_get_image(
        connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<int16_t>(rectangle.x()),
        static_cast<int16_t>(rectangle.y()), static_cast<uint16_t>(rectangle.width()),
        static_cast<uint16_t>(rectangle.height()), ~0U);
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection(), cookie, nullptr));
    const auto bytes
        = static_cast<size_t>(rectangle.width()) * 4 * static_cast<size_t>(rectangle.height());
    if (!reply) {
        return failure(QStringLiteral("cannot read %1 of drawable 0x%2")
                           .arg(describe(rectangle))
                           .arg(drawable, 0, 16));
    }
    if (static_cast<size_t>(xcb_get_image_data_length(reply.get())) < bytes) {
        return failure(QStringLiteral("the server answered with less than the picture"));
    }
    QImage image(rectangle.size(), QImage::Format_RGB32);
    std::memcpy(image.bits(), xcb_get_image_data(reply.get()), bytes);
    // The fourth byte is undefined in a 24-bit drawable; equal pictures must compare equal.
    auto *pixels = reinterpret_cast<QRgb *>(image.bits());
    for (size_t i = 0; i < bytes / 4; ++i) {
        pixels[i] |= 0xff000000U;
    }
    return image;
}

void XClient::fill(xcb_drawable_t drawable, const QRect &rectangle, QRgb color) const
{
    const xcb_gcontext_t context = newId();
    const uint32_t values[] = {color & 0xffffffU, XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS};
    xcb_create_gc(connection(), context, drawable, XCB_GC_FOREGROUND | XCB_GC_SUBWINDOW_MODE,
                  values);
    const xcb_rectangle_t area{
        static_cast<int16_t>(rectangle.x()), static_cast<int16_t>(rectangle.y()),
        static_cast<uint16_t>(rectangle.width()), static_cast<uint16_t>(rectangle.height())};
    xcb_poly_fill_rectangle(connection(), drawable, context, 1, &area);
    xcb_free_gc(connection(), context);
    flush();
}

} // namespace glimmerpane::testing
