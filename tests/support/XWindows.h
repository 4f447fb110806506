// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

#include <optional>
#include <vector>

namespace glimmerpane::testing
{

enum class Listing {
    Picker, ///< mapped top-levels with WM_STATE Normal, as browsers' pickers walk the tree
    All, ///< every window below the root, whatever its state
};

struct Property {
    xcb_atom_t type = XCB_ATOM_NONE;
    int format = 0; ///< bits of one item: 8, 16 or 32
    QByteArray bytes;

    std::vector<uint32_t> items32() const;
};

struct WindowAttributes {
    bool overrideRedirect = false;
    uint8_t mapState = XCB_MAP_STATE_UNMAPPED; ///< xcb_map_state_t
    uint16_t windowClass = 0;
    uint32_t eventMask = 0; ///< of all clients
};

/** In stacking order, the lowest first; with Picker the highest first, as pickers show them. */
std::vector<xcb_window_t> listWindows(const XClient &client, Listing listing);

/** The first of the list with exactly this title. */
std::optional<xcb_window_t> findWindow(const XClient &client, const QString &title,
                                       Listing listing = Listing::Picker);

/** The direct child of the root that holds the window: itself, or the window manager's frame. */
xcb_window_t topLevelOf(const XClient &client, xcb_window_t window);
std::vector<xcb_window_t> childrenOf(const XClient &client, xcb_window_t window);

/** _NET_WM_NAME, or else WM_NAME. */
QString titleOf(const XClient &client, xcb_window_t window);
/** Without the border, in root pixels; empty when there is no such window. */
std::optional<QRect> geometryOf(const XClient &client, xcb_window_t window);
std::optional<WindowAttributes> attributesOf(const XClient &client, xcb_window_t window);
/** Whether it and everything above it is mapped. */
bool isViewable(const XClient &client, xcb_window_t window);
std::optional<Property> propertyOf(const XClient &client, xcb_window_t window,
                                   const QByteArray &name);
/** Sends a client message to a window, or about it to the root. */
void sendMessage(const XClient &client, xcb_window_t window, const QByteArray &type,
                 std::uint32_t value, xcb_window_t receiver, std::uint32_t second = 0);
/** What a window manager sends when a person closes a window. */
void askToClose(const XClient &client, xcb_window_t window);

/** The process that _NET_WM_PID names; 0 if none. */
pid_t pidOf(const XClient &client, xcb_window_t window);

} // namespace glimmerpane::testing
