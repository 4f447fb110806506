// SPDX-License-Identifier: MIT
#include "tests/support/CapturedWindow.h"

#include "tests/support/XWindows.h"

#include <utility>
#include <xcb/composite.h>

namespace glimmerpane::testing
{

Result<CapturedWindow> CapturedWindow::open(const XClient &client, xcb_window_t window,
                                            Redirect redirect)
{
    CapturedWindow captured(client, window);
    if (redirect == Redirect::Automatic) {
        const auto cookie = xcb_composite_redirect_window_checked(client.connection(), window,
                                                                  XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        if (const auto done = client.check(cookie, QStringLiteral("cannot redirect")); !done) {
            return failure(done.error());
        }
        captured.redirected_ = true;
    }
    if (const auto named = captured.refresh(); !named) {
        return failure(named.error());
    }
    return captured;
}

CapturedWindow::CapturedWindow(CapturedWindow &&other) noexcept
    : client_(other.client_)
    , window_(other.window_)
    , pixmap_(std::exchange(other.pixmap_, XCB_NONE))
    , size_(other.size_)
    , redirected_(std::exchange(other.redirected_, false))
{
}

CapturedWindow::~CapturedWindow()
{
    freePixmap();
    if (redirected_) {
        xcb_composite_unredirect_window(client_->connection(), window_,
                                        XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
    client_->flush();
}

void CapturedWindow::freePixmap()
{
    if (pixmap_ != XCB_NONE) {
        xcb_free_pixmap(client_->connection(), pixmap_);
    }
    pixmap_ = XCB_NONE;
}

Result<void> CapturedWindow::refresh()
{
    freePixmap();
    const xcb_pixmap_t pixmap = client_->newId();
    const auto cookie
        = xcb_composite_name_window_pixmap_checked(client_->connection(), window_, pixmap);
    if (const auto named = client_->check(cookie, QStringLiteral("the window has no pixmap"));
        !named) {
        return named;
    }
    pixmap_ = pixmap;
    // The pixmap's own size: the window may have another one by now.
    const auto geometry = geometryOf(*client_, window_);
    const auto query = xcb_get_geometry(client_->connection(), pixmap);
    const Reply<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(client_->connection(), query, nullptr));
    if (!reply || !geometry) {
        return failure(QStringLiteral("the window is gone"));
    }
    size_ = QSize(reply->width, reply->height);
    return {};
}

Result<QImage> CapturedWindow::picture()
{
    const auto geometry = geometryOf(*client_, window_);
    if (!geometry) {
        return failure(QStringLiteral("the window is gone"));
    }
    if (geometry->size() != size_) {
        if (const auto named = refresh(); !named) {
            return failure(named.error());
        }
    }
    return part({QPoint(), size_});
}

Result<QImage> CapturedWindow::part(const QRect &rectangle) const
{
    return client_->image(pixmap_, rectangle);
}

Result<QImage> windowPicture(const XClient &client, xcb_window_t window)
{
    auto captured = CapturedWindow::open(client, window);
    return captured ? captured->picture() : failure(captured.error());
}

} // namespace glimmerpane::testing
