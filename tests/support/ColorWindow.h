// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

namespace glimmerpane::testing
{

/**
 * A plain coloured window to test against. Its colour is the window's background, so the server
 * repaints what was covered without asking anybody.
 */
class ColorWindow
{
public:
    enum class Kind {
        OverrideRedirect, ///< no window manager touches it
        Managed, ///< an ordinary window; the manager may move and frame it
    };

    struct Options {
        QRect rectangle; ///< root pixels
        QRgb color = 0xff808080;
        Kind kind = Kind::OverrideRedirect;
        QString title{}; ///< none if empty
    };

    /**
     * Mapped on return as far as the server is concerned; a managed one may still have to be
     * mapped by the manager. The client must outlive the object, at the same address.
     */
    static Result<ColorWindow> show(const XClient &client, const Options &options);
    ColorWindow(ColorWindow &&other) noexcept;
    ColorWindow &operator=(ColorWindow &&) = delete;
    ColorWindow(const ColorWindow &) = delete;
    ColorWindow &operator=(const ColorWindow &) = delete;
    ~ColorWindow();

    xcb_window_t id() const { return window_; }

    /** Each returns after the server has handled it. */
    void setColor(QRgb color) const;
    void setGeometry(const QRect &rectangle) const;
    void raise() const;
    void lower() const;
    void setMapped(bool mapped) const;

private:
    ColorWindow(const XClient &client, xcb_window_t window)
        : client_(&client)
        , window_(window)
    {
    }

    const XClient *client_;
    xcb_window_t window_;
};

} // namespace glimmerpane::testing
