// SPDX-License-Identifier: MIT
#include "platform/x11/Atoms.h"

#include "platform/x11/Reply.h"

#include <string>

namespace glimmerpane::x11
{

namespace
{

constexpr AtomName perScreen = "_NET_WM_CM_S"; // EWMH: each screen has its own

} // namespace

Atoms::Atoms(xcb_connection_t *connection, int screenNumber)
{
    std::array<xcb_intern_atom_cookie_t, atomNames.size()> asked{};
    for (std::size_t i = 0; i < asked.size(); ++i) {
        std::string name(atomNames[i]);
        if (i == perScreen.index()) {
            name += std::to_string(screenNumber);
        }
        asked[i]
            = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    }
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const Reply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection, asked[i], nullptr));
        atoms_[i] = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
}

} // namespace glimmerpane::x11
