// SPDX-License-Identifier: MIT
#include "platform/x11/WindowManagerName.h"

#include "platform/x11/WindowProperties.h"

namespace glimmerpane::x11
{

QByteArray windowManagerName(const Connection &connection)
{
    const PropertyQuestion check(connection, connection.root(),
                                 connection.atom("_NET_SUPPORTING_WM_CHECK"), sizeof(xcb_window_t));
    const auto window = check.item<xcb_window_t>();
    constexpr std::uint32_t longest = 100;
    return window
        ? PropertyQuestion(connection, *window, connection.atom("_NET_WM_NAME"), longest).bytes()
        : QByteArray();
}

} // namespace glimmerpane::x11
