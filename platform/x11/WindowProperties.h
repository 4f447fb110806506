// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstring>
#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/** Sets a property to `length` items of `format` bits. */
void setProperty(const Connection &connection, xcb_window_t window, xcb_atom_t property,
                 xcb_atom_t type, std::uint8_t format, std::size_t length, const void *data);

/** A property that the server has been asked for; several questions take one round trip. */
class PropertyQuestion
{
public:
    /** Asks for at most `longest` bytes; the connection must outlive this object. */
    PropertyQuestion(const Connection &connection, xcb_window_t window, xcb_atom_t property,
                     std::uint32_t longest, xcb_atom_t type = XCB_GET_PROPERTY_TYPE_ANY);

    /** Empty if it is not set. Once; waits for the server. */
    QByteArray bytes() const;

    /** The property's items. Once; waits for the server. */
    template<typename T>
    std::vector<T> items() const
    {
        const QByteArray value = bytes();
        std::vector<T> items(std::size_t(value.size()) / sizeof(T));
        if (!items.empty()) {
            std::memcpy(items.data(), value.constData(), items.size() * sizeof(T));
        }
        return items;
    }

    /** Null unless the property is one such item. Once; waits for the server. */
    template<typename T>
    std::optional<T> item() const
    {
        const std::vector<T> all = items<T>();
        return all.size() == 1 ? std::optional(all.front()) : std::nullopt;
    }

private:
    xcb_connection_t *connection_;
    xcb_get_property_cookie_t cookie_;
};

/** Sets its only type, "_NET_WM_WINDOW_TYPE_...": some pickers misread a list of two. */
void setWindowType(const Connection &connection, xcb_window_t window, AtomName type);

/**
 * Sets the window's title, its type ("_NET_WM_WINDOW_TYPE_...") and the program and machine that it
 * belongs to.
 */
void describeWindow(const Connection &connection, xcb_window_t window, const QString &title,
                    AtomName type);

/**
 * The same for a window above all others that the program moves by itself: it takes no keyboard
 * input, and compositors draw no shadow around it.
 */
void describeOverlay(const Connection &connection, xcb_window_t window, const QString &title,
                     AtomName type = "_NET_WM_WINDOW_TYPE_UTILITY");

} // namespace glimmerpane::x11
