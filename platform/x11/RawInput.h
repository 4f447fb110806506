// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <cstdint>

namespace glimmerpane::x11
{

/** Selects raw events of all devices (XI2proto: XCB_INPUT_XI_EVENT_MASK_RAW_...). */
void selectRawEvents(const Connection &connection, std::uint32_t mask);

/** The type of an XInput event (XCB_INPUT_RAW_...); 0 for any other event. */
int rawEventType(const xcb_generic_event_t &event, std::uint8_t xinputOpcode);

} // namespace glimmerpane::x11
