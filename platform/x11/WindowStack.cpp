// SPDX-License-Identifier: MIT
#include "platform/x11/WindowStack.h"

#include "platform/x11/Compositing.h"
#include "platform/x11/Regions.h"
#include "platform/x11/WindowProperties.h"

#include <algorithm>
#include <limits>
#include <span>

namespace glimmerpane::x11
{

namespace
{

using Tree = Reply<xcb_query_tree_reply_t>;

Tree treeOf(const Connection &connection, xcb_window_t window)
{
    return Tree(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
}

/**
 * Mutter and its derivatives keep windows mapped that are minimised or on another workspace, below
 * an input-only window. That window is the only way to tell which those are.
 */
bool isGuard(const Connection &connection, xcb_window_t window)
{
    constexpr std::uint32_t longest = 64;
    return PropertyQuestion(connection, window, XCB_ATOM_WM_NAME, longest)
        .bytes()
        .endsWith(" guard window");
}

/** The mapped windows with pixels below `top`; their shapes are not set yet. */
std::vector<StackedWindow> mappedWindows(const Connection &connection, xcb_window_t top)
{
    const Tree tree = treeOf(connection, connection.root());
    if (!tree) {
        return {};
    }
    const std::span children(xcb_query_tree_children(tree.get()),
                             std::size_t(xcb_query_tree_children_length(tree.get())));
    const std::span below(children.begin(), std::ranges::find(children, top));
    std::vector<xcb_get_window_attributes_cookie_t> asked;
    asked.reserve(below.size());
    for (const xcb_window_t window : below) {
        asked.push_back(xcb_get_window_attributes(connection.get(), window));
    }
    std::vector<StackedWindow> mapped;
    for (std::size_t i = 0; i < below.size(); ++i) {
        const Reply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(connection.get(), asked[i], nullptr));
        if (!reply || reply->map_state != XCB_MAP_STATE_VIEWABLE) {
            continue;
        }
        if (reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            mapped.emplace_back();
            mapped.back().id = below[i];
            mapped.back().visual = reply->visual;
        } else if (isGuard(connection, below[i])) {
            mapped.clear();
        }
    }
    return mapped;
}

/** Pending requests about a window. */
struct Question {
    Question(const Connection &connection, xcb_window_t window)
        : connection_(connection.get())
        , geometry_(xcb_get_geometry(connection_, window))
    {
        const Region region(connection, connection.newId());
        xcb_xfixes_create_region_from_window(connection_, region.get(), window,
                                             XCB_SHAPE_SK_BOUNDING);
        shape_ = xcb_xfixes_fetch_region(connection_, region.get());
    }

    void answer(StackedWindow &window) const
    {
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection_, geometry_, nullptr));
        const Reply<xcb_xfixes_fetch_region_reply_t> shape(
            xcb_xfixes_fetch_region_reply(connection_, shape_, nullptr));
        if (!geometry || !shape) {
            return;
        }
        constexpr std::uint8_t argbDepth = 32;
        const int border = geometry->border_width;
        window.origin = QPoint(geometry->x + border, geometry->y + border);
        window.hasAlpha = geometry->depth == argbDepth;
        window.shape = regionOf(*shape);
        window.shape &= QRect(0, 0, geometry->width, geometry->height); // borders are ignored
        window.shape.translate(window.origin);
    }

private:
    xcb_connection_t *connection_;
    xcb_get_geometry_cookie_t geometry_;
    xcb_xfixes_fetch_region_cookie_t shape_{};
};

std::vector<xcb_window_t> managedClients(const Connection &connection)
{
    constexpr std::size_t most = 1024;
    return PropertyQuestion(connection, connection.root(), connection.atom("_NET_CLIENT_LIST"),
                            most * sizeof(xcb_window_t))
        .items<xcb_window_t>();
}

/** Sets what windows, or the clients in their frames, request of the compositor. */
void setOpacities(const Connection &connection, std::vector<StackedWindow> &windows)
{
    std::vector<xcb_window_t> candidates = managedClients(connection);
    for (const StackedWindow &window : windows) {
        candidates.push_back(window.id);
    }
    const xcb_atom_t property = connection.atom("_NET_WM_WINDOW_OPACITY");
    std::vector<PropertyQuestion> questions;
    questions.reserve(candidates.size());
    for (const xcb_window_t window : candidates) {
        questions.emplace_back(connection, window, property, sizeof(std::uint32_t),
                               XCB_ATOM_CARDINAL);
    }
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto opacity = questions[i].item<std::uint32_t>();
        if (!opacity) {
            continue;
        }
        const auto found
            = std::ranges::find(windows, topLevelOf(connection, candidates[i]), &StackedWindow::id);
        if (found != windows.end()) {
            found->opacity = double(*opacity) / std::numeric_limits<std::uint32_t>::max();
        }
    }
}

} // namespace

std::vector<StackedWindow> windowsBelow(const Connection &connection, xcb_window_t top)
{
    std::vector<StackedWindow> windows = mappedWindows(connection, top);
    std::vector<Question> questions;
    questions.reserve(windows.size());
    for (const StackedWindow &window : windows) {
        questions.emplace_back(connection, window.id);
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        questions[i].answer(windows[i]);
    }
    if (isComposited(connection)) {
        setOpacities(connection, windows);
    } else { // without a compositor, windows are opaque
        for (StackedWindow &window : windows) {
            window.hasAlpha = false;
        }
    }
    std::erase_if(windows, [](const StackedWindow &window) {
        return window.shape.isEmpty() || window.opacity <= 0;
    });
    return windows;
}

xcb_window_t topLevelOf(const Connection &connection, xcb_window_t window)
{
    while (window != 0) {
        const Tree tree = treeOf(connection, window);
        const xcb_window_t parent = tree ? tree->parent : 0;
        if (parent == connection.root()) {
            return window;
        }
        window = parent;
    }
    return 0;
}

} // namespace glimmerpane::x11
