// SPDX-License-Identifier: MIT
#include "ui/TrayHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace glimmerpane
{

namespace
{

QString service()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString path()
{
    return QStringLiteral("/StatusNotifierWatcher");
}

} // namespace

TrayHost::TrayHost()
    : watcher_(service(), QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration)
{
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayHost::ask);
    // From any sender: naming the service would wait for the bus to look it up.
    watcher_.connection().connect(
        {}, path(), service(), QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(ask()));
    ask();
}

void TrayHost::ask()
{
    QDBusMessage read = QDBusMessage::createMethodCall(
        service(), path(), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    read << service() << QStringLiteral("IsStatusNotifierHostRegistered");
    read.setAutoStartService(false);
    auto *const call = new QDBusPendingCallWatcher(watcher_.connection().asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isValid() && reply.value().variant().toBool()) {
            Q_EMIT found();
        }
    });
}

} // namespace glimmerpane
