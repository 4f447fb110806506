// SPDX-License-Identifier: MIT
#include "platform/x11/ShellX11.h"

#include "platform/Notification.h"
#include "platform/SettingsProgram.h"
#include "platform/x11/Connection.h"
#include "platform/x11/ManagerMessages.h"
#include "platform/x11/WindowProperties.h"
#include "platform/x11/WindowShape.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>
#include <QWindow>

namespace glimmerpane::x11
{

namespace
{

xcb_window_t idOf(const QWindow &window)
{
    return static_cast<xcb_window_t>(window.winId());
}

} // namespace

void ShellX11::activateWindow(QWindow &window, const QString &startupId)
{
    const auto connection = Connection::open();
    if (!connection) {
        return;
    }
    // The manager must have heard that the window is to be shown before it is to be activated.
    if (const auto *const qt = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        xcb_flush(qt->connection());
    }
    // A program's own request may be refused; a direct user action (EWMH's source indication 2) is
    // not.
    sendToManager(*connection, idOf(window), "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME});
    if (!startupId.isEmpty()) {
        endStartupNotification(*connection, startupId.toUtf8());
    }
    connection->flush();
}

bool ShellX11::isActive(const QWindow &window)
{
    const auto connection = Connection::open();
    if (!connection) {
        return false;
    }
    const PropertyQuestion active(*connection, connection->root(),
                                  connection->atom("_NET_ACTIVE_WINDOW"), sizeof(xcb_window_t));
    return active.item<xcb_window_t>() == idOf(window);
}

void ShellX11::setShape(QWindow &window, const QRegion &pixels)
{
    setWindowShape(idOf(window), pixels);
}

bool ShellX11::openPrivacySettings()
{
    const auto program = settingsProgram(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    return program && QProcess::startDetached(*program, {});
}

void ShellX11::notify(const QString &title, const QString &text)
{
    sendNotification(title, text);
}

void ShellX11::openUrl(const QUrl &url)
{
    QDesktopServices::openUrl(url);
}

} // namespace glimmerpane::x11
