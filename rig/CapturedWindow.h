// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XWindows.h"

#include <xcb/composite.h>

namespace glimmerpane::testing
{

enum class PictureOf {
    Composite, ///< the pixmap, which shows the window wherever it is
    Screen, ///< the window on the screen, if it is neither redirected nor covered
};

/**
 * A window's picture as a capturing client reads it: the pixmap that Composite keeps while the
 * window is redirected. The pixmap is named once, and again when the window's size has changed.
 */
class CapturedWindow
{
public:
    /** The client must outlive the object, at the same address. */
    static Result<CapturedWindow> open(const XClient &client, xcb_window_t window,
                                       PictureOf source = PictureOf::Composite)
    {
        CapturedWindow captured;
        captured.client_ = &client;
        captured.window_ = window;
        captured.source_ = source;
        const auto named = captured.namePixmap();
        return named ? Result<CapturedWindow>(std::move(captured)) : failure(named.error());
    }

    xcb_window_t window() const { return window_; }
    QSize size() const { return size_; }

    /** The window's pixels. */
    Result<QImage> picture()
    {
        const auto geometry = geometryOf(*client_, window_);
        if (!geometry) {
            return failure(QStringLiteral("the window is gone"));
        }
        const auto named = geometry->size() == size_ ? Result<void>() : namePixmap();
        return named ? part({QPoint(), size_}) : failure(named.error());
    }

    /** Only a part, from the top left. Costs one request, so it does not notice a new size. */
    Result<QImage> part(const QRect &rectangle) const
    {
        const bool seen = source_ == PictureOf::Screen;
        return client_->image(seen ? window_ : pixmap_.get_deleter().id, rectangle);
    }

private:
    CapturedWindow() = default;

    Result<void> namePixmap()
    {
        if (source_ == PictureOf::Screen) {
            size_ = geometryOf(*client_, window_).value_or(QRect()).size();
            return {};
        }
        const xcb_pixmap_t id = client_->newId();
        const auto cookie
            = xcb_composite_name_window_pixmap_checked(client_->connection(), window_, id);
        const auto named = client_->check(cookie, QStringLiteral("the window has no pixmap"));
        if (named) {
            pixmap_ = {client_, {id}};
            // The pixmap's own size, because the window's may have changed by now.
            const auto geometry = ask<xcb_get_geometry, xcb_get_geometry_reply>(*client_, id);
            size_ = geometry ? QSize(geometry->width, geometry->height) : QSize();
        }
        return named;
    }

    const XClient *client_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    PictureOf source_ = PictureOf::Composite;
    ServerObject<xcb_free_pixmap> pixmap_;
    QSize size_;
};

/** Opens the window, reads its whole picture once, and closes it. */
inline Result<QImage> windowPicture(const XClient &client, xcb_window_t window)
{
    auto captured = CapturedWindow::open(client, window);
    return captured ? captured->picture() : failure(captured.error());
}

} // namespace glimmerpane::testing
