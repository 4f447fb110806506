// SPDX-License-Identifier: MIT
#include "platform/x11/RawInput.h"

#include "platform/x11/Events.h"

#include <xcb/xinput.h>

namespace glimmerpane::x11
{

void selectRawEvents(const Connection &connection, std::uint32_t mask)
{
    const struct {
        xcb_input_event_mask_t head{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
        std::uint32_t mask;
    } wanted{.mask = mask};
    xcb_input_xi_select_events(connection.get(), connection.root(), 1, &wanted.head);
}

int rawEventType(const xcb_generic_event_t &event, std::uint8_t xinputOpcode)
{
    const auto &generic = eventAs<xcb_ge_generic_event_t>(event);
    const bool isInput = typeOf(event) == XCB_GE_GENERIC && generic.extension == xinputOpcode;
    return isInput ? generic.event_type : 0;
}

} // namespace glimmerpane::x11
