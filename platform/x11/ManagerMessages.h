// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QByteArray>

#include <array>

namespace glimmerpane::x11
{

/** Sends a client message about `window` to the window manager, as EWMH specifies. */
void sendToManager(const Connection &connection, xcb_window_t window, const char *type,
                   const std::array<std::uint32_t, 5> &data);

/** Unmaps the window, and informs the manager even if it is not mapped now (ICCCM 4.1.4). */
void withdraw(const Connection &connection, xcb_window_t window);

/** Announces that the launch with this id is complete (startup notification protocol). */
void endStartupNotification(const Connection &connection, const QByteArray &startupId);

} // namespace glimmerpane::x11
