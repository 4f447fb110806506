// SPDX-License-Identifier: MIT
#include "platform/x11/Compositing.h"

#include <algorithm>

namespace glimmerpane::x11
{

xcb_atom_t compositingSelection(const Connection &connection)
{
    return connection.atom("_NET_WM_CM_S");
}

bool isComposited(const Connection &connection)
{
    const auto cookie = xcb_get_selection_owner(connection.get(), compositingSelection(connection));
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection.get(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool blursBehindWindows(const Connection &connection)
{
    const auto cookie = xcb_list_properties(connection.get(), connection.root());
    const Reply<xcb_list_properties_reply_t> reply(
        xcb_list_properties_reply(connection.get(), cookie, nullptr));
    if (!reply || !isComposited(connection)) {
        return false;
    }
    const auto *begin = xcb_list_properties_atoms(reply.get());
    const auto *end = begin + xcb_list_properties_atoms_length(reply.get());
    return std::find(begin, end, connection.atom(blurBehindProperty)) != end;
}

xcb_visualid_t translucentVisual(const xcb_screen_t &screen)
{
    auto depths = xcb_screen_allowed_depths_iterator(&screen);
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
        auto visuals = xcb_depth_visuals_iterator(depths.data);
        for (; depths.data->depth == 32 && visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            if (visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) {
                return visuals.data->visual_id;
            }
        }
    }
    return 0;
}

} // namespace glimmerpane::x11
