// SPDX-License-Identifier: MIT
#include "platform/x11/ManagerMessages.h"

#include "platform/x11/ServerId.h"

#include <algorithm>

namespace glimmerpane::x11
{

void sendToManager(const Connection &connection, xcb_window_t window, const char *type,
                   const std::array<std::uint32_t, 5> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection.atom(type);
    std::ranges::copy(data, message.data.data32);
    xcb_send_event(connection.get(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
}

void withdraw(const Connection &connection, xcb_window_t window)
{
    xcb_unmap_window(connection.get(), window);
    xcb_unmap_notify_event_t notice{};
    notice.response_type = XCB_UNMAP_NOTIFY;
    notice.event = connection.root();
    notice.window = window;
    xcb_send_event(connection.get(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&notice));
}

void endStartupNotification(const Connection &connection, const QByteArray &startupId)
{
    // The text and its terminating NUL are split into events of 20 bytes, which share the window's
    // id.
    const auto sender = connection.newId();
    xcb_create_window(connection.get(), 0, sender, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const QByteArray text = "remove: ID=\"" + QByteArray(startupId).replace('"', "") + '"';
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = sender;
    message.type = connection.atom("_NET_STARTUP_INFO_BEGIN");
    const auto more = connection.atom("_NET_STARTUP_INFO");
    constexpr int most = sizeof message.data.data8;
    for (qsizetype at = 0; at <= text.size(); at += most) {
        std::ranges::fill(message.data.data8, 0);
        std::ranges::copy(text.mid(at, most), message.data.data8);
        xcb_send_event(connection.get(), 0, connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&message));
        message.type = more;
    }
    xcb_destroy_window(connection.get(), sender);
    connection.flush();
}

} // namespace glimmerpane::x11
