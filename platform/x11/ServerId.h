// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <utility>

namespace glimmerpane::x11
{

/** Owns one X server resource; `destroy` is the request that frees it. Move-only. */
template<auto destroy>
class ServerId
{
public:
    ServerId() = default;

    /** Takes ownership of a resource of this connection, which must outlive the handle. */
    ServerId(const Connection &connection, std::uint32_t id)
        : ServerId(connection.get(), id)
    {
    }
    ServerId(xcb_connection_t *connection, std::uint32_t id)
        : connection_(connection)
        , id_(id)
    {
    }

    ServerId(ServerId &&other) noexcept
        : connection_(std::exchange(other.connection_, nullptr))
        , id_(std::exchange(other.id_, 0))
    {
    }

    ServerId &operator=(ServerId &&other) noexcept
    {
        std::swap(connection_, other.connection_);
        std::swap(id_, other.id_);
        return *this;
    }

    ~ServerId()
    {
        if (connection_ != nullptr) {
            destroy(connection_, id_);
        }
    }

    std::uint32_t get() const { return id_; }

private:
    xcb_connection_t *connection_ = nullptr;
    std::uint32_t id_ = 0;
};

/** Ends an automatic redirection by xcb_composite_redirect_window(). */
inline void endRedirection(xcb_connection_t *connection, xcb_window_t window)
{
    xcb_composite_unredirect_window(connection, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

using Colormap = ServerId<xcb_free_colormap>;
using Cursor = ServerId<xcb_free_cursor>;
using Damage = ServerId<xcb_damage_destroy>;
using GraphicsContext = ServerId<xcb_free_gc>;
using Picture = ServerId<xcb_render_free_picture>;
using Pixmap = ServerId<xcb_free_pixmap>;
using Redirection = ServerId<endRedirection>; ///< the id is the redirected window's
using Region = ServerId<xcb_xfixes_destroy_region>;
using Window = ServerId<xcb_destroy_window>;

} // namespace glimmerpane::x11
