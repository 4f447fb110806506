// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XWindows.h"

namespace glimmerpane::testing
{

/**
 * A plain coloured window to test against. Its colour is the window's background, so the server
 * repaints uncovered parts by itself.
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
    };

    /**
     * The server has handled the request to map it; a window manager may still delay a managed one.
     * The client must outlive the object, at the same address.
     */
    static Result<ColorWindow> show(const XClient &client, const Options &options)
    {
        const uint32_t values[]
            = {options.color & 0xffffffU, options.kind == Kind::Managed ? 0U : 1U};
        const auto window = createWindow(client, options.rectangle,
                                         XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        if (!window) {
            return failure(window.error());
        }
        setPlaceHints(client, *window, options.rectangle.topLeft());
        xcb_map_window(client.connection(), *window);
        client.sync();
        ColorWindow result;
        result.window_ = {&client, {*window}};
        return result;
    }

    xcb_window_t id() const { return window_.get_deleter().id; }

    /** Each returns after the server has handled it. */
    void lower() const
    {
        const uint32_t below = XCB_STACK_MODE_BELOW;
        xcb_configure_window(window_->connection(), id(), XCB_CONFIG_WINDOW_STACK_MODE, &below);
        window_->sync();
    }
    void setColor(QRgb color) const
    {
        const uint32_t pixel = color & 0xffffffU;
        xcb_change_window_attributes(window_->connection(), id(), XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(window_->connection(), 0, id(), 0, 0, 0, 0);
        window_->sync();
    }
    void setGeometry(const QRect &rectangle) const
    {
        testing::setGeometry(*window_, id(), rectangle);
    }

private:
    ColorWindow() = default;

    ServerObject<xcb_destroy_window> window_;
};

} // namespace glimmerpane::testing
