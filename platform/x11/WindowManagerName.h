// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QByteArray>

namespace glimmerpane::x11
{

/** The window manager's name; empty if none announces itself (EWMH). Waits for the server. */
QByteArray windowManagerName(const Connection &connection);

} // namespace glimmerpane::x11
