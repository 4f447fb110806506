// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Atoms.h"
#include "platform/x11/Reply.h"
#include "services/Error.h"

#include <QRect>

#include <xcb/xcb.h>

#include <cstdint>
#include <expected>
#include <memory>

namespace glimmerpane::x11
{

/** One connection to an X server. Used by one thread at a time. */
class Connection
{
public:
    static std::expected<Connection, Error> open(const QByteArray &display = qgetenv("DISPLAY"));

    xcb_connection_t *get() const { return connection_.get(); }
    const xcb_screen_t &screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    QRect rootRectangle() const
    {
        return {0, 0, screen_->width_in_pixels, screen_->height_in_pixels};
    }
    int fileDescriptor() const { return xcb_get_file_descriptor(get()); }
    /** Whether file descriptors can be sent; xcb gives up other connections that try. */
    bool takesFiles() const;
    bool isBroken() const { return xcb_connection_has_error(get()) != 0; }

    std::uint32_t newId() const { return xcb_generate_id(get()); }
    void flush() const { xcb_flush(get()); }

    /** Waits for the result of a checked request; `name` is the request's name, for the log. */
    std::expected<void, Error> check(xcb_void_cookie_t request, const char *name) const;

    xcb_atom_t atom(AtomName name) const { return atoms_[name]; }

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    using Handle = std::unique_ptr<xcb_connection_t, Disconnect>;

    Connection(Handle connection, int screenNumber);

    Handle connection_;
    xcb_screen_t *screen_;
    Atoms atoms_;
};

/** The extensions' first event numbers; the server has been told which version of each is used. */
struct Extensions {
    std::uint8_t firstDamageEvent = 0;
    std::uint8_t firstXFixesEvent = 0;
    std::uint8_t firstRandrEvent = 0;
    std::uint8_t xinputOpcode = 0;
};

/**
 * Negotiates the versions of all extensions that capturing needs; the error names a missing one.
 */
std::expected<Extensions, Error> requireExtensions(const Connection &connection);

/** A connection on which all extensions are initialised, and their event numbers. */
struct ExtendedConnection {
    Connection connection;
    Extensions extensions;
};

/** Opens a connection to the X server of $DISPLAY; fails if that lacks an extension. */
std::expected<ExtendedConnection, Error> openExtended();

} // namespace glimmerpane::x11
