// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

namespace glimmerpane::testing
{

/**
 * A window's picture as a capturing client reads it: the pixmap that Composite keeps for it. The
 * pixmap is named once and again after the window's size changed or it was mapped anew.
 */
class CapturedWindow
{
public:
    enum class Redirect {
        No, ///< rely on somebody else's redirection; fails if there is none
        Automatic, ///< redirect it ourselves too, for as long as the object lives
    };

    /** The client must outlive the object, at the same address. */
    static Result<CapturedWindow> open(const XClient &client, xcb_window_t window,
                                       Redirect redirect = Redirect::No);
    CapturedWindow(CapturedWindow &&other) noexcept;
    CapturedWindow &operator=(CapturedWindow &&) = delete;
    CapturedWindow(const CapturedWindow &) = delete;
    CapturedWindow &operator=(const CapturedWindow &) = delete;
    ~CapturedWindow();

    xcb_window_t window() const { return window_; }
    xcb_pixmap_t pixmap() const { return pixmap_; }
    QSize size() const { return size_; }

    /** Names the pixmap anew; needed after a resize or a new mapping. */
    Result<void> refresh();

    /**
     * Pixels of the window, origin top left; the whole picture is named anew first if the size
     * changed, a part is read from the pixmap as it is, at the cost of one request.
     */
    Result<QImage> picture();
    Result<QImage> part(const QRect &rectangle) const;

private:
    CapturedWindow(const XClient &client, xcb_window_t window)
        : client_(&client)
        , window_(window)
    {
    }
    void freePixmap();

    const XClient *client_;
    xcb_window_t window_;
    xcb_pixmap_t pixmap_ = XCB_NONE;
    QSize size_;
    bool redirected_ = false;
};

/** Opens, reads the whole picture once and closes. */
Result<QImage> windowPicture(const XClient &client, xcb_window_t window);

} // namespace glimmerpane::testing
