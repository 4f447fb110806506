// SPDX-License-Identifier: MIT
#include "model/Alerts.h"

#include "model/MainViewModel.h"

namespace glimmerpane
{

namespace
{

constexpr qsizetype longestVersionShown = 60; ///< characters; the text comes from the service

} // namespace

Alert permissionAlert(const Error &reason)
{
    return {.messageText = MainViewModel::tr("Screen Recording Permission Required"),
            .informativeText
            = MainViewModel::tr("Please grant Screen Recording permission in System Settings > "
                                "Privacy & Security > Screen Recording")
                + QStringLiteral("\n\n") + reason.text,
            .style = Alert::Style::Warning,
            .buttons = {MainViewModel::tr("Open System Settings"), MainViewModel::tr("Cancel")}};
}

Alert impossibleAlert(const Error &reason)
{
    return {.messageText = MainViewModel::tr("Screen Recording Is Not Possible Here"),
            .informativeText = reason.text,
            .style = Alert::Style::Warning,
            .buttons = {MainViewModel::tr("OK")}};
}

Alert settingsAlert(const Error &reason)
{
    return {.messageText = MainViewModel::tr("Screen Recording"),
            .informativeText
            = MainViewModel::tr("Glimmerpane does not know the settings program of this desktop.")
                + QStringLiteral("\n\n") + reason.text,
            .style = Alert::Style::Warning,
            .buttons = {MainViewModel::tr("OK")}};
}

Alert quitAlert()
{
    return {.messageText = MainViewModel::tr("Stop Sharing and Quit?"),
            .informativeText
            = MainViewModel::tr("Others in your call will no longer see the shared area."),
            .style = Alert::Style::Warning,
            .buttons = {MainViewModel::tr("Keep Sharing"), MainViewModel::tr("Stop and Quit")},
            .escapesToFirst = true};
}

Alert updateAlert(const UpdateInfo &info, const QString &currentVersion)
{
    return {.messageText = MainViewModel::tr("Update Available"),
            .informativeText
            = MainViewModel::tr("Current version: %1\nNew version: %2")
                  .arg(currentVersion, info.lastAppVersion.left(longestVersionShown)),
            .style = Alert::Style::Informational,
            .buttons = {MainViewModel::tr("Download New Version"), MainViewModel::tr("Cancel")}};
}

} // namespace glimmerpane
