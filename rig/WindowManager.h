// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/ColorWindow.h"
#include "rig/WaitFor.h"

namespace glimmerpane::testing
{

/** Starts a program; fails if it ends or takes too long before it is ready. */
inline Result<ChildProcess> startUntil(const std::function<bool()> &isReady,
                                       const ChildProcess::Options &options)
{
    constexpr std::chrono::seconds limit{15};
    auto process = ChildProcess::start(options);
    bool ready = false;
    if (process) {
        waitFor([&] { return (ready = isReady()) || !process->isRunning(); }, limit);
    }
    if (process && !ready) {
        return failure(QStringLiteral("%1 did not become ready: %2")
                           .arg(options.program, QString::fromLocal8Bit(process->output())));
    }
    return process;
}

/** Maps a small window and checks whether a window manager manages it. */
inline bool managesNewWindow(const XClient &client)
{
    constexpr std::chrono::milliseconds limit{250};
    const auto probe = ColorWindow::show(
        client, {.rectangle = {0, 0, 8, 8}, .kind = ColorWindow::Kind::Managed});
    return probe
        && waitFor([&] { return propertyOf(client, probe->id(), "WM_STATE").has_value(); }, limit);
}

/** Whether a selection has an owner, as it does while a manager is running. */
inline bool isOwned(const XClient &client, const QByteArray &selection)
{
    const auto reply = ask<xcb_get_selection_owner, xcb_get_selection_owner_reply>(
        client, client.atom(selection));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

/**
 * Starts a window manager, such as "openbox", and returns once it actually manages windows: some
 * announce themselves earlier and miss windows mapped in between. The environment must name the
 * client's display.
 */
inline Result<ChildProcess> startWindowManager(const XClient &client,
                                               const ChildProcess::Options &options)
{
    const auto isReady = [&] {
        return propertyOf(client, client.root(), "_NET_SUPPORTING_WM_CHECK")
            && managesNewWindow(client);
    };
    return startUntil(isReady, options);
}

/** The same for picom; returns once it owns the display's compositing selection. */
inline Result<ChildProcess> startCompositor(const XClient &client,
                                            const ChildProcess::Options &options)
{
    ChildProcess::Options withBackend = options; // since version 11, picom has none by default
    withBackend.arguments += {QStringLiteral("--backend"), QStringLiteral("xrender")};
    return startUntil([&] { return isOwned(client, "_NET_WM_CM_S0"); }, withBackend);
}

} // namespace glimmerpane::testing
