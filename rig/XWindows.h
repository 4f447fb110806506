// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <cstring>
#include <optional>
#include <vector>

namespace glimmerpane::testing
{

struct Property {
    QByteArray bytes;

    std::vector<uint32_t> items32() const
    {
        std::vector<uint32_t> items(static_cast<size_t>(bytes.size()) / sizeof(uint32_t));
        std::memcpy(items.data(), bytes.constData(), items.size() * sizeof(uint32_t));
        return items;
    }
};

inline std::optional<Property> propertyOf(const XClient &client, xcb_window_t window,
                                          const char *name)
{
    constexpr uint32_t words = 1U << 20;
    const auto reply = ask<xcb_get_property, xcb_get_property_reply>(
        client, uint8_t{0}, window, client.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0U, words);
    if (!reply || reply->type == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    return Property{{static_cast<const char *>(xcb_get_property_value(reply.get())),
                     xcb_get_property_value_length(reply.get())}};
}

/** The first item of a property of numbers; 0 if there is none. */
inline uint32_t numberOf(const XClient &client, xcb_window_t window, const char *name)
{
    const auto property = propertyOf(client, window, name);
    const auto items = property ? property->items32() : std::vector<uint32_t>{};
    return items.empty() ? 0 : items.front();
}

/** The process that _NET_WM_PID names; 0 if none. */
inline pid_t pidOf(const XClient &client, xcb_window_t window)
{
    return static_cast<pid_t>(numberOf(client, window, "_NET_WM_PID"));
}

/** The window's _NET_WM_NAME. */
inline QString titleOf(const XClient &client, xcb_window_t window)
{
    const auto title = propertyOf(client, window, "_NET_WM_NAME");
    return title ? QString::fromUtf8(title->bytes) : QString();
}

/** Without the border, in root pixels; empty if there is no such window. */
inline std::optional<QRect> geometryOf(const XClient &client, xcb_window_t window)
{
    constexpr int16_t zero = 0;
    const auto geometry = ask<xcb_get_geometry, xcb_get_geometry_reply>(client, window);
    const auto origin = ask<xcb_translate_coordinates, xcb_translate_coordinates_reply>(
        client, window, client.root(), zero, zero);
    if (!geometry || !origin) {
        return std::nullopt;
    }
    return QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
}

inline auto attributesOf(const XClient &client, xcb_window_t window)
{
    return ask<xcb_get_window_attributes, xcb_get_window_attributes_reply>(client, window);
}

/** Whether it and all its ancestors are mapped. */
inline bool isViewable(const XClient &client, xcb_window_t window)
{
    const auto attributes = attributesOf(client, window);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

enum class Listing {
    Picker, ///< those on the screen with WM_STATE Normal, as browsers' pickers list them
    All,
};

/** All windows below the root, each level in stacking order, the lowest first. */
inline std::vector<xcb_window_t> listWindows(const XClient &client, Listing listing)
{
    constexpr uint32_t normalState = 1;
    std::vector<xcb_window_t> windows{client.root()};
    for (size_t i = 0; i < windows.size(); ++i) {
        if (const auto tree = ask<xcb_query_tree, xcb_query_tree_reply>(client, windows[i])) {
            const auto *first = xcb_query_tree_children(tree.get());
            windows.insert(windows.end(), first,
                           first + xcb_query_tree_children_length(tree.get()));
        }
    }
    std::erase_if(windows, [&](xcb_window_t window) {
        const bool isListed = listing == Listing::All
            || (numberOf(client, window, "WM_STATE") == normalState && isViewable(client, window));
        return window == client.root() || !isListed;
    });
    return windows;
}

/** The first of the list with exactly this title. */
inline std::optional<xcb_window_t> findWindow(const XClient &client, const QString &title,
                                              Listing listing = Listing::Picker)
{
    for (const auto window : listWindows(client, listing)) {
        if (titleOf(client, window) == title) {
            return window;
        }
    }
    return std::nullopt;
}

/** Not mapped yet. The values belong to the bits of the mask (XCB_CW_*). */
inline Result<xcb_window_t> createWindow(const XClient &client, const QRect &rectangle,
                                         uint32_t mask, const uint32_t *values)
{
    const xcb_window_t window = client.newId();
    const auto cookie = xcb_create_window_checked(
        client.connection(), XCB_COPY_FROM_PARENT, window, client.root(),
        static_cast<int16_t>(rectangle.x()), static_cast<int16_t>(rectangle.y()),
        static_cast<uint16_t>(rectangle.width()), static_cast<uint16_t>(rectangle.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, mask, values);
    const auto created = client.check(cookie, QStringLiteral("cannot create a window"));
    return created ? Result<xcb_window_t>(window) : failure(created.error());
}

/** A manager places a window itself unless its hints say that the user chose its position. */
inline void setPlaceHints(const XClient &client, xcb_window_t window, QPoint place)
{
    constexpr int words = 18;
    const int hints[words] = {1, place.x(), place.y()};
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window,
                        XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, words, hints);
}

/** Asks the window manager to add no frame. */
inline void removeFrame(const XClient &client, xcb_window_t window)
{
    constexpr uint32_t noFrame[] = {2, 0, 0, 0, 0}; // the decorations, which are none
    const auto hints = client.atom("_MOTIF_WM_HINTS");
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window, hints, hints, 32, 5,
                        noFrame);
}

inline void setTitle(const XClient &client, xcb_window_t window, const QString &title)
{
    const QByteArray text = title.toUtf8();
    for (const char *name : {"WM_NAME", "_NET_WM_NAME"}) { // browsers read the old one
        xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window, client.atom(name),
                            client.atom("UTF8_STRING"), 8, static_cast<uint32_t>(text.size()),
                            text.constData());
    }
}

/** Asks for a position and a size; a window manager may comply later, or not at all. */
inline void setGeometry(const XClient &client, xcb_window_t window, const QRect &rectangle)
{
    constexpr uint16_t place = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y;
    constexpr uint16_t size = XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    const int values[] = {rectangle.x(), rectangle.y(), rectangle.width(), rectangle.height()};
    xcb_configure_window(client.connection(), window, place | size, values);
    client.sync();
}

/** Sends a client message to a window, or about it to the root. */
inline void sendMessage(const XClient &client, xcb_window_t window, const char *type,
                        uint32_t value, xcb_window_t receiver, uint32_t second = 0)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = client.atom(type);
    message.data.data32[0] = value;
    message.data.data32[1] = second;
    const uint32_t mask = receiver == client.root()
        ? XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY
        : XCB_EVENT_MASK_NO_EVENT;
    xcb_send_event(client.connection(), 0, receiver, mask,
                   reinterpret_cast<const char *>(&message));
    client.sync();
}

/** Sends what a window manager sends when the user closes a window. */
inline void askToClose(const XClient &client, xcb_window_t window)
{
    sendMessage(client, window, "WM_PROTOCOLS", client.atom("WM_DELETE_WINDOW"), window);
}

} // namespace glimmerpane::testing
