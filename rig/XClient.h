// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"
#include "rig/Result.h"

#include <QImage>
#include <QPainter>
#include <QRect>

#include <cstring>
#include <type_traits>

namespace glimmerpane::testing
{

using x11::Reply;

/** Sends a request and waits for its reply, which is null if the server refuses. */
template<auto send, auto receive, typename... Arguments>
auto ask(const x11::Connection &client, Arguments... arguments)
{
    auto *const reply = receive(client.get(), send(client.get(), arguments...), nullptr);
    return Reply<std::remove_pointer_t<decltype(reply)>>(reply);
}

/**
 * A separate connection to an X server, so a real second client. All rectangles are root or
 * drawable pixels, origin top left. For one thread.
 */
class XClient : public x11::Connection
{
public:
    static Result<XClient> connect(const QString &displayName)
    {
        auto connection = open(displayName.toLocal8Bit());
        if (!connection) {
            return failure(connection.error().text);
        }
        // The server refuses an extension's requests until its version has been negotiated.
        if (const auto extensions = x11::requireExtensions(*connection); !extensions) {
            return failure(extensions.error().text);
        }
        return XClient(std::move(*connection));
    }

    xcb_connection_t *connection() const { return get(); }
    QSize rootSize() const { return rootRectangle().size(); }

    /** Waits for the server. */
    xcb_atom_t atom(const QByteArray &name) const
    {
        const auto reply = ask<xcb_intern_atom, xcb_intern_atom_reply>(
            *this, uint8_t{0}, static_cast<uint16_t>(name.size()), name.constData());
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    /** Returns after the server has handled everything sent before. */
    void sync() const { ask<xcb_get_input_focus, xcb_get_input_focus_reply>(*this); }

    /** Fails with this text if the checked request failed. */
    Result<void> check(xcb_void_cookie_t cookie, const QString &text) const
    {
        const Reply<xcb_generic_error_t> error(xcb_request_check(get(), cookie));
        if (!error && !isBroken()) {
            return {};
        }
        const int code = error ? error->error_code : 0;
        return failure(QStringLiteral("%1 (X error %2)").arg(text).arg(code));
    }

    /** The visible content of this rectangle, without the pointer; black beyond the root. */
    Result<QImage> screenshot(const QRect &rectangle) const
    {
        const QRect onRoot = rectangle & QRect(QPoint(), rootSize());
        if (onRoot == rectangle) {
            return image(root(), rectangle);
        }
        QImage picture(rectangle.size(), QImage::Format_RGB32);
        picture.fill(Qt::black);
        if (!onRoot.isEmpty()) {
            const auto part = image(root(), onRoot);
            if (!part) {
                return part;
            }
            QPainter(&picture).drawImage(onRoot.topLeft() - rectangle.topLeft(), *part);
        }
        return picture;
    }
    Result<QImage> screenshot() const { return screenshot({QPoint(), rootSize()}); }

    /** The pixels of a window or pixmap of the root's depth; the rectangle must lie inside it. */
    Result<QImage> image(xcb_drawable_t drawable, const QRect &rectangle) const
    {
        const auto [x, y, width, height] = xcbRectangle(rectangle);
        const auto reply = ask<xcb_get_image, xcb_get_image_reply>(
            *this, uint8_t{XCB_IMAGE_FORMAT_Z_PIXMAP}, drawable, x, y, width, height, ~0U);
        QImage image(rectangle.size(), QImage::Format_ARGB32);
        const auto bytes = image.sizeInBytes();
        if (!reply || xcb_get_image_data_length(reply.get()) < bytes) {
            return failure(QStringLiteral("cannot read drawable 0x%1").arg(drawable, 0, 16));
        }
        std::memcpy(image.bits(), xcb_get_image_data(reply.get()), static_cast<size_t>(bytes));
        // The fourth byte is undefined in a 24-bit drawable; equal pictures must compare equal.
        return std::move(image).convertToFormat(QImage::Format_RGB32);
    }

    /** Fills a part of any drawable, past its child windows if it is the root. */
    void fill(xcb_drawable_t drawable, const QRect &rectangle, QRgb color) const
    {
        const xcb_gcontext_t context = newId();
        const uint32_t values[] = {color & 0xffffffU, XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS};
        xcb_create_gc(get(), context, drawable, XCB_GC_FOREGROUND | XCB_GC_SUBWINDOW_MODE, values);
        const xcb_rectangle_t area = xcbRectangle(rectangle);
        xcb_poly_fill_rectangle(get(), drawable, context, 1, &area);
        xcb_free_gc(get(), context);
        flush();
    }

private:
    explicit XClient(x11::Connection connection)
        : x11::Connection(std::move(connection))
    {
    }

    static xcb_rectangle_t xcbRectangle(const QRect &r)
    {
        return {static_cast<int16_t>(r.x()), static_cast<int16_t>(r.y()),
                static_cast<uint16_t>(r.width()), static_cast<uint16_t>(r.height())};
    }
};

template<auto destroy>
struct Destroy {
    uint32_t id = XCB_NONE;

    void operator()(const XClient *client) const
    {
        destroy(client->connection(), id);
        client->sync();
    }
};

/** Owns a resource on the server; the client that created it must outlive it. */
template<auto destroy>
using ServerObject = std::unique_ptr<const XClient, Destroy<destroy>>;

} // namespace glimmerpane::testing
