// SPDX-License-Identifier: MIT
#include "platform/x11/Xwayland.h"

#include "platform/x11/Monitors.h"

#include <string_view>

namespace glimmerpane::x11
{

bool isXwayland(const Connection &connection)
{
    // It has an extension of this name, or, before version 23.1, only outputs.
    constexpr std::string_view name = "XWAYLAND";
    const auto cookie = xcb_query_extension(connection.get(), name.size(), name.data());
    const Reply<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection.get(), cookie, nullptr));
    if (reply && reply->present != 0) {
        return true;
    }
    const auto displays = monitors(connection);
    return !displays.empty() && displays.front().name.startsWith(QLatin1String(name));
}

} // namespace glimmerpane::x11
