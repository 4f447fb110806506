// SPDX-License-Identifier: MIT
#include "tests/support/XWindows.h"

#include <algorithm>
#include <cstring>

namespace glimmerpane::testing
{

namespace
{

constexpr uint32_t normalState = 1;
constexpr uint32_t maximumItems = 1U << 20;

Reply<xcb_query_tree_reply_t> treeOf(const XClient &client, xcb_window_t window)
{
    const auto cookie = xcb_query_tree(client.connection(), window);
    return Reply<xcb_query_tree_reply_t>(
        xcb_query_tree_reply(client.connection(), cookie, nullptr));
}

/**
 * Adds the application windows at or below the window: a window with a state is one of them and
 * is not searched any further.
 */
void collectStated(const XClient &client, xcb_window_t window, std::vector<xcb_window_t> &found)
{
    const auto state = propertyOf(client, window, "WM_STATE");
    if (state) {
        const auto items = state->items32();
        if (!items.empty() && items.front() == normalState && isViewable(client, window)) {
            found.push_back(window);
        }
        return;
    }
    auto children = childrenOf(client, window);
    std::reverse(children.begin(), children.end());
    for (const auto child : children) {
        collectStated(client, child, found);
    }
}

void collectAll(const XClient &client, xcb_window_t window, std::vector<xcb_window_t> &found)
{
    for (const auto child : childrenOf(client, window)) {
        found.push_back(child);
        collectAll(client, child, found);
    }
}

} // namespace

std::vector<uint32_t> Property::items32() const
{
    if (format != 32) {
        return {};
    }
    std::vector<uint32_t> items(static_cast<size_t>(bytes.size()) / sizeof(uint32_t));
    std::memcpy(items.data(), bytes.constData(), items.size() * sizeof(uint32_t));
    return items;
}

std::vector<xcb_window_t> listWindows(const XClient &client, Listing listing)
{
    std::vector<xcb_window_t> found;
    if (listing == Listing::Picker) {
        collectStated(client, client.root(), found);
    } else {
        collectAll(client, client.root(), found);
    }
    return found;
}

std::optional<xcb_window_t> findWindow(const XClient &client, const QString &title, Listing listing)
{
    for (const auto window : listWindows(client, listing)) {
        if (titleOf(client, window) == title) {
            return window;
        }
    }
    return std::nullopt;
}

xcb_window_t topLevelOf(const XClient &client, xcb_window_t window)
{
    for (;;) {
        const auto tree = treeOf(client, window);
        if (!tree || tree->parent == XCB_WINDOW_NONE || tree->parent == client.root()) {
            return window;
        }
        window = tree->parent;
    }
}

std::vector<xcb_window_t> childrenOf(const XClient &client, xcb_window_t window)
{
    const auto tree = treeOf(client, window);
    if (!tree) {
        return {};
    }
    const auto *first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

QString titleOf(const XClient &client, xcb_window_t window)
{
    if (const auto title = propertyOf(client, window, "_NET_WM_NAME")) {
        return QString::fromUtf8(title->bytes);
    }
    const auto title = propertyOf(client, window, "WM_NAME");
    return title ? QString::fromLatin1(title->bytes) : QString();
}

std::optional<QRect> geometryOf(const XClient &client, xcb_window_t window)
{
    auto *connection = client.connection();
    const auto geometryCookie = xcb_get_geometry(connection, window);
    const auto originCookie = xcb_translate_coordinates(connection, window, client.root(), 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection, originCookie, nullptr));
    if (!geometry || !origin) {
        return std::nullopt;
    }
    return QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
}

std::optional<WindowAttributes> attributesOf(const XClient &client, xcb_window_t window)
{
    const auto cookie = xcb_get_window_attributes(client.connection(), window);
    const Reply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(client.connection(), cookie, nullptr));
    if (!reply) {
        return std::nullopt;
    }
    return WindowAttributes{.overrideRedirect = reply->override_redirect != 0,
                            .mapState = reply->map_state,
                            .windowClass = reply->_class,
                            .eventMask = reply->all_event_masks};
}

bool isViewable(const XClient &client, xcb_window_t window)
{
    const auto attributes = attributesOf(client, window);
    return attributes && attributes->mapState == XCB_MAP_STATE_VIEWABLE;
}

std::optional<Property> propertyOf(const XClient &client, xcb_window_t window,
                                   const QByteArray &name)
{
    const auto cookie = xcb_get_property(client.connection(), 0, window, client.atom(name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, maximumItems);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(client.connection(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    return Property{.type = reply->type,
                    .format = reply->format,
                    .bytes
                    = QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                 xcb_get_property_value_length(reply.get()))};
}

pid_t pidOf(const XClient &client, xcb_window_t window)
{
    const auto property = propertyOf(client, window, "_NET_WM_PID");
    const auto items = property ? property->items32() : std::vector<uint32_t>{};
    return items.empty() ? 0 : static_cast<pid_t>(items.front());
}

void sendMessage(const XClient &client, xcb_window_t window, const QByteArray &type,
                 std::uint32_t value, xcb_window_t receiver, std::uint32_t second)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = client.atom(type);
    message.data.data32[0] = value;
    message.data.data32[1] = second;
    const std::uint32_t mask = receiver == client.root()
        ? XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY
        : XCB_EVENT_MASK_NO_EVENT;
    xcb_send_event(client.connection(), 0, receiver, mask,
                   reinterpret_cast<const char *>(&message));
    client.sync();
}

void askToClose(const XClient &client, xcb_window_t window)
{
    sendMessage(client, window, "WM_PROTOCOLS", client.atom("WM_DELETE_WINDOW"), window);
}

} // namespace glimmerpane::testing
