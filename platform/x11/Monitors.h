// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Displays.h"
#include "platform/x11/Connection.h"

#include <vector>

namespace glimmerpane::x11
{

/** RandR's active monitors, the primary one first. Waits for the server. */
std::vector<Display> monitors(const Connection &connection);

/** Selects the events that report changed monitors, and also `rootEvents` on the root. */
void watchMonitors(const Connection &connection, std::uint32_t rootEvents = 0);

/** Whether the event reports changed monitors. */
bool tellsOfMonitors(const xcb_generic_event_t &event, const Connection &connection,
                     const Extensions &extensions);

} // namespace glimmerpane::x11
