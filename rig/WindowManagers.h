// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <array>

namespace glimmerpane::testing
{

enum class WindowManager {
    None,
    Openbox,
    OpenboxAndPicom,
    Xfwm4,
    Metacity,
    I3,
    Icewm,
    Fluxbox,
    Mutter,
    Kwin,
    Marco,
    GnomeShell,
};

struct ManagerProgram {
    WindowManager manager;
    const char *name; ///< for the log, in one word
    const char *command; ///< of a shell
};

/** All except None. Those of a desktop get the buses that they need to start. */
constexpr std::array<ManagerProgram, 11> managerPrograms{{
    {WindowManager::Openbox, "openbox", "openbox"},
    {WindowManager::OpenboxAndPicom, "openbox-picom", "openbox"},
    {WindowManager::Xfwm4, "xfwm4", "dbus-run-session xfwm4 --compositor=on"},
    {WindowManager::Metacity, "metacity", "dbus-run-session metacity"},
    {WindowManager::I3, "i3", "i3 -c /dev/null"},
    {WindowManager::Icewm, "icewm", "icewm"},
    // Without a program that sets the wallpaper, it would open a message in the middle.
    {WindowManager::Fluxbox, "fluxbox", "env wpsetters=true fluxbox"},
    {WindowManager::Mutter, "mutter", "dbus-run-session mutter --x11"},
    {WindowManager::Kwin, "kwin", "dbus-run-session kwin_x11"},
    {WindowManager::Marco, "marco", "dbus-run-session marco"},
    {WindowManager::GnomeShell, "gnome-shell",
     "dbus-run-session sh -c 'DBUS_SYSTEM_BUS_ADDRESS=$DBUS_SESSION_BUS_ADDRESS "
     "exec gnome-shell --x11'"},
}};

} // namespace glimmerpane::testing
