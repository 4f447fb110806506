// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Reply.h"
#include "tests/support/Result.h"

#include <QImage>
#include <QRect>

#include <memory>
#include <xcb/xcb.h>

namespace glimmerpane::testing
{

/**
 * A connection of its own to an X server, so a real second client. All rectangles are root or
 * drawable pixels, origin top left. Use it on one thread.
 */
class XClient
{
public:
    static Result<XClient> connect(const QString &displayName);

    xcb_connection_t *connection() const { return connection_.get(); }
    const xcb_screen_t *screen() const { return screen_; }
    xcb_window_t root() const { return screen_->root; }
    QSize rootSize() const { return {screen_->width_in_pixels, screen_->height_in_pixels}; }
    bool isBroken() const { return xcb_connection_has_error(connection()) != 0; }

    xcb_atom_t atom(const QByteArray &name) const;
    uint32_t newId() const { return xcb_generate_id(connection()); }
    void flush() const { xcb_flush(connection()); }

    /** Returns after the server has handled everything sent before. */
    void sync() const;

    /** Fails with the text if the checked request did. */
    Result<void> check(xcb_void_cookie_t cookie, const QString &text) const;

    /** What is seen at this place of the display, without the pointer. */
    Result<QImage> screenshot(const QRect &rectangle) const;
    Result<QImage> screenshot() const { return screenshot({QPoint(), rootSize()}); }

    /** The pixels of a window or pixmap of the root's depth; the rectangle must lie inside it. */
    Result<QImage> image(xcb_drawable_t drawable, const QRect &rectangle) const;

    /** Fills a part of any drawable, past its child windows if it is the root. */
    void fill(xcb_drawable_t drawable, const QRect &rectangle, QRgb color) const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

    XClient(Connection connection, const xcb_screen_t *screen)
        : connection_(std::move(connection))
        , screen_(screen)
    {
    }

    Connection connection_;
    const xcb_screen_t *screen_;
};

} // namespace glimmerpane::testing
