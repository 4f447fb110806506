// SPDX-License-Identifier: MIT
#pragma once

#include <QProcessEnvironment>

namespace glimmerpane::testing
{

/**
 * Our own environment, but on this X display and without what is left of another session, its bus
 * included. A program of ours asks nobody for updates there, and none keeps settings for the next
 * one.
 */
inline QProcessEnvironment environmentOf(const QString &displayName)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"WAYLAND_DISPLAY", "SWAYSOCK", "XAUTHORITY", "XDG_CURRENT_DESKTOP",
                             "XDG_SESSION_TYPE", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR",
                             "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("DISPLAY"), displayName);
    environment.insert(QStringLiteral("GLIMMERPANE_NO_UPDATE_CHECK"), QStringLiteral("1"));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    return environment;
}

} // namespace glimmerpane::testing
