// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QByteArray>

#include <array>

namespace glimmerpane::x11
{

/** A client message about `window` to who manages windows, as EWMH sends them. */
void sendToManager(const Connection &connection, xcb_window_t window, const char *type,
                   const std::array<std::uint32_t, 5> &data);

/** Tells everyone who shows that a program is starting, by this id, that it has started. */
void endStartupNotification(const Connection &connection, const QByteArray &startupId);

} // namespace glimmerpane::x11
