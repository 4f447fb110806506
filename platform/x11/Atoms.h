// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace glimmerpane::x11
{

/** The atoms that the program uses, except those that the protocol predefines. */
inline constexpr std::array<std::string_view, 34> atomNames{
    "ESETROOT_PMAP_ID",
    "UTF8_STRING",
    "WM_DELETE_WINDOW",
    "WM_PROTOCOLS",
    "WM_STATE",
    "_COMPTON_SHADOW",
    "_GTK_FRAME_EXTENTS",
    "_KDE_NET_WM_BLUR_BEHIND_REGION",
    "_MOTIF_WM_HINTS",
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_MOVERESIZE_WINDOW",
    "_NET_STARTUP_INFO",
    "_NET_STARTUP_INFO_BEGIN",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_CM_S", // and the screen's number
    "_NET_WM_DESKTOP",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_BELOW",
    "_NET_WM_STATE_DEMANDS_ATTENTION",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_USER_TIME",
    "_NET_WM_WINDOW_OPACITY",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DND",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_XROOTPMAP_ID",
};

/** One of those names; any other does not compile. */
class AtomName
{
public:
    consteval AtomName(const char *name)
        : index_(std::size_t(std::ranges::find(atomNames, name) - atomNames.begin()))
    {
        (void)atomNames.at(index_);
    }

    constexpr std::size_t index() const { return index_; }

private:
    std::size_t index_;
};

/** The atoms of one X server. */
class Atoms
{
public:
    /** Asks for all of them in one round trip; they are 0 if the connection is broken. */
    Atoms(xcb_connection_t *connection, int screenNumber);

    xcb_atom_t operator[](AtomName name) const { return atoms_[name.index()]; }

private:
    std::array<xcb_atom_t, atomNames.size()> atoms_{};
};

} // namespace glimmerpane::x11
