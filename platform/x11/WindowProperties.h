// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QByteArray>
#include <QString>

#include <cstddef>

namespace glimmerpane::x11
{

/** Sets a property to `length` items of `format` bits. */
void setProperty(const Connection &connection, xcb_window_t window, xcb_atom_t property,
                 xcb_atom_t type, std::uint8_t format, std::size_t length, const void *data);

/**
 * At most `longest` bytes of a property of any type; empty if it is not set. Waits for the server.
 */
QByteArray propertyOf(const Connection &connection, xcb_window_t window, const char *property,
                      std::uint32_t longest);

/**
 * Sets the window's title, its type ("_NET_WM_WINDOW_TYPE_...") and the program and machine that it
 * belongs to. Waits for the server.
 */
void describeWindow(const Connection &connection, xcb_window_t window, const QString &title,
                    const char *type);

} // namespace glimmerpane::x11
