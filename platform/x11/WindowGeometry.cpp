// SPDX-License-Identifier: MIT
#include "platform/x11/WindowGeometry.h"

#include <array>
#include <cstdint>

namespace glimmerpane::x11
{

void setGeometry(const Connection &connection, xcb_window_t window, QRect place)
{
    // The protocol takes positions as sign-extended 32-bit values.
    const std::array<std::uint32_t, 4> geometry{
        static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y()),
        static_cast<std::uint32_t>(place.width()), static_cast<std::uint32_t>(place.height())};
    xcb_configure_window(connection.get(), window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                             | XCB_CONFIG_WINDOW_HEIGHT,
                         geometry.data());
}

} // namespace glimmerpane::x11
