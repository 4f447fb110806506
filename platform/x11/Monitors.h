// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/x11/Connection.h"

#include <vector>

namespace glimmerpane::x11
{

/** RandR's active monitors, the primary one first. Waits for the server. */
std::vector<Display> monitors(const Connection &connection);

} // namespace glimmerpane::x11
