// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

namespace glimmerpane::x11
{

/** Whether the server is Xwayland, in which only X11 windows have pixels. Waits for the server. */
bool isXwayland(const Connection &connection);

} // namespace glimmerpane::x11
