// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <array>
#include <cstring>

namespace glimmerpane::x11
{

/** The type of the "event" that reports the error of an unchecked request. */
inline constexpr int errorType = 0;

/** The event's type (XCB_..._NOTIFY), or errorType. */
inline int typeOf(const xcb_generic_event_t &event)
{
    constexpr int isSent = 0x80; // by another client, with SendEvent
    return event.response_type & ~isSent;
}

/** The event as the structure that belongs to its type. */
template<typename T>
const T &eventAs(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const T &>(event);
}

/** Sends an event to the clients that selected one of these events (a mask) on the root. */
template<typename T>
void sendToRoot(const Connection &connection, std::uint32_t events, const T &event)
{
    constexpr std::size_t length = 32; // X11 protocol, SendEvent
    static_assert(sizeof event <= length);
    std::array<char, length> bytes{};
    std::memcpy(bytes.data(), &event, sizeof event);
    xcb_send_event(connection.get(), 0, connection.root(), events, bytes.data());
}

/** Sends what ICCCM and EWMH require to be sent to the window manager. */
template<typename T>
void sendToManager(const Connection &connection, const T &event)
{
    sendToRoot(connection,
               XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, event);
}

} // namespace glimmerpane::x11
