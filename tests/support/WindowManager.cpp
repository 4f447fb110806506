// SPDX-License-Identifier: MIT
#include "tests/support/WindowManager.h"

#include "tests/support/ColorWindow.h"
#include "tests/support/WaitFor.h"
#include "tests/support/XWindows.h"

#include <QDeadlineTimer>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds startLimit{15};
constexpr std::chrono::milliseconds probeLimit{250};

bool isAnnounced(const XClient &client)
{
    return propertyOf(client, client.root(), "_NET_SUPPORTING_WM_CHECK").has_value();
}

/** Maps a small window and looks whether the manager takes it. */
bool managesNewWindow(const XClient &client)
{
    const auto probe = ColorWindow::show(
        client, {.rectangle = QRect(0, 0, 8, 8), .kind = ColorWindow::Kind::Managed});
    return probe
        && waitFor([&] { return propertyOf(client, probe->id(), "WM_STATE").has_value(); },
                   probeLimit);
}

bool hasCompositor(const XClient &client)
{
    const auto cookie = xcb_get_selection_owner(client.connection(), client.atom("_NET_WM_CM_S0"));
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(client.connection(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

QString problem(const ChildProcess::Options &options, const ChildProcess &process)
{
    return QStringLiteral("%1 did not become ready: %2")
        .arg(options.program, QString::fromLocal8Bit(process.output()));
}

} // namespace

Result<ChildProcess> startWindowManager(const XClient &client, const ChildProcess::Options &options)
{
    auto process = ChildProcess::start(options);
    if (!process) {
        return process;
    }
    const QDeadlineTimer deadline(startLimit);
    bool ready = waitFor([&] { return isAnnounced(client) || !process->isRunning(); }, startLimit)
        && managesNewWindow(client);
    while (!ready && process->isRunning() && !deadline.hasExpired()) {
        ready = managesNewWindow(client);
    }
    if (!ready) {
        return failure(problem(options, *process));
    }
    return process;
}

Result<ChildProcess> startCompositor(const XClient &client, const ChildProcess::Options &options)
{
    auto process = ChildProcess::start(options);
    if (!process) {
        return process;
    }
    waitFor([&] { return hasCompositor(client) || !process->isRunning(); }, startLimit);
    if (!hasCompositor(client)) {
        return failure(problem(options, *process));
    }
    return process;
}

} // namespace glimmerpane::testing
