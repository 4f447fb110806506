// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <cstdint>

namespace glimmerpane::x11
{

/** Asks for raw events of every device (XI2proto: XCB_INPUT_XI_EVENT_MASK_RAW_...). */
void selectRawEvents(const Connection &connection, std::uint32_t mask);

/** Which XInput event it is (XCB_INPUT_RAW_...); 0 for any other one. */
int rawEventType(const xcb_generic_event_t &event, std::uint8_t xinputOpcode);

} // namespace glimmerpane::x11
