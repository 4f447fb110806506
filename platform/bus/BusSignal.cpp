// SPDX-License-Identifier: MIT
#include "platform/bus/BusSignal.h"

#include <QDBusConnection>

#include <utility>

namespace glimmerpane
{

BusSignal::BusSignal(const BusObject &object, const QString &name, Handler handler)
    : handler_(std::move(handler))
{
    QDBusConnection::sessionBus().connect(object.service, object.path, object.interface, name, this,
                                          SLOT(arrived(QDBusMessage)));
}

void BusSignal::arrived(const QDBusMessage &message)
{
    const Handler handler = handler_; // which may destroy this object
    handler(message.arguments());
}

BusOwnerWatch::BusOwnerWatch(const QString &service, std::function<void()> left)
    : watcher_(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForUnregistration)
{
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, &watcher_,
                     [left = std::move(left)] { left(); });
}

} // namespace glimmerpane
