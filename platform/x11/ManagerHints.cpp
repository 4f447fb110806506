// SPDX-License-Identifier: MIT
#include "platform/x11/ManagerHints.h"

#include "platform/x11/ManagerMessages.h"
#include "platform/x11/WindowProperties.h"

#include <array>
#include <cstdint>
#include <vector>

namespace glimmerpane::x11
{

namespace
{

using SizeHints = std::array<std::uint32_t, 18>;

/** ICCCM 4.1.2.3: PSize, PMinSize and PMaxSize; with a place, USPosition and PWinGravity, static.
 */
SizeHints sizeHints(QSize size, std::optional<QPoint> place)
{
    const auto width = static_cast<std::uint32_t>(size.width());
    const auto height = static_cast<std::uint32_t>(size.height());
    SizeHints hints{8 | 16 | 32, 0, 0, width, height, width, height, width, height};
    if (place) {
        hints[0] |= 1 | 512;
        hints[1] = static_cast<std::uint32_t>(place->x());
        hints[2] = static_cast<std::uint32_t>(place->y());
        hints.back() = XCB_GRAVITY_STATIC;
    }
    return hints;
}

} // namespace

void setManagerHints(const Connection &connection, xcb_window_t window, const ManagerHints &hints)
{
    const auto set = [&](xcb_atom_t property, xcb_atom_t type, const auto &items) {
        setProperty(connection, window, property, type, 32, items.size(), items.data());
    };
    set(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, sizeHints(hints.size, hints.place));
    // ICCCM 4.1.2.4: the flag InputHint; no input.
    set(XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, std::array<std::uint32_t, 9>{1});
    // Motif's hints, which every manager supports: the flag for decorations, and no decorations,
    // which viewers would see.
    const xcb_atom_t motif = connection.atom("_MOTIF_WM_HINTS");
    set(motif, motif, std::array<std::uint32_t, 5>{2});
    std::vector<xcb_atom_t> states;
    for (const AtomName name : hints.states) {
        states.push_back(connection.atom(name));
    }
    set(connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, states);
    // EWMH: every desktop, and no focus when it is mapped.
    set(connection.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL,
        std::array<std::uint32_t, 1>{0xffffffff});
    set(connection.atom("_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, std::array<std::uint32_t, 1>{0});
}

void requestPlace(const Connection &connection, xcb_window_t window, QPoint place)
{
    // EWMH: the gravity, the flags for x and y, and the source of the request, an application.
    constexpr std::uint32_t both = 3U << 8U;
    constexpr std::uint32_t fromApplication = 1U << 12U;
    sendToManager(connection, window, "_NET_MOVERESIZE_WINDOW",
                  {XCB_GRAVITY_STATIC | both | fromApplication,
                   static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y()), 0,
                   0});
}

} // namespace glimmerpane::x11
