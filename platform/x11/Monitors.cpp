// SPDX-License-Identifier: MIT
#include "platform/x11/Monitors.h"

#include "platform/x11/Events.h"

#include <xcb/randr.h>

#include <algorithm>

namespace glimmerpane::x11
{

namespace
{

QString atomName(const Connection &connection, xcb_atom_t atom)
{
    const Reply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(
        connection.get(), xcb_get_atom_name(connection.get(), atom), nullptr));
    return reply ? QString::fromUtf8(xcb_get_atom_name_name(reply.get()),
                                     xcb_get_atom_name_name_length(reply.get()))
                 : QString();
}

} // namespace

std::vector<Display> monitors(const Connection &connection)
{
    const auto cookie = xcb_randr_get_monitors(connection.get(), connection.root(), 1);
    const Reply<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(connection.get(), cookie, nullptr));
    std::vector<Display> displays;
    if (!reply) {
        return displays;
    }
    auto primary = displays.size();
    auto iterator = xcb_randr_get_monitors_monitors_iterator(reply.get());
    for (; iterator.rem > 0; xcb_randr_monitor_info_next(&iterator)) {
        const auto &monitor = *iterator.data;
        if (monitor.primary != 0) {
            primary = displays.size();
        }
        displays.push_back({.name = atomName(connection, monitor.name),
                            .pixels = {monitor.x, monitor.y, monitor.width, monitor.height}});
    }
    if (primary < displays.size()) {
        std::rotate(displays.begin(), displays.begin() + std::ptrdiff_t(primary),
                    displays.begin() + std::ptrdiff_t(primary) + 1);
    }
    return displays;
}

void watchMonitors(const Connection &connection, std::uint32_t rootEvents)
{
    // The root's ConfigureNotify reports a new screen size, RandR the monitors on it.
    const std::uint32_t events = rootEvents | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &events);
    xcb_randr_select_input(connection.get(), connection.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE
                               | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
}

bool tellsOfMonitors(const xcb_generic_event_t &event, const Connection &connection,
                     const Extensions &extensions)
{
    const int type = typeOf(event);
    if (type == XCB_CONFIGURE_NOTIFY) {
        const auto &configured = eventAs<xcb_configure_notify_event_t>(event);
        return configured.window == connection.root();
    }
    return type == extensions.firstRandrEvent + XCB_RANDR_SCREEN_CHANGE_NOTIFY
        || type == extensions.firstRandrEvent + XCB_RANDR_NOTIFY;
}

} // namespace glimmerpane::x11
