// SPDX-License-Identifier: MIT
#pragma once

#include "platform/bus/BusObject.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace glimmerpane
{

/** Listens to one signal of an object on the session bus while it exists. Main thread. */
class BusSignal : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const QVariantList &arguments)>;

    BusSignal(const BusObject &object, const QString &name, Handler handler);

private Q_SLOTS:
    void arrived(const QDBusMessage &message);

private:
    const Handler handler_;
};

/** Notices that the owner of a name leaves the session bus. Main thread. */
class BusOwnerWatch
{
public:
    BusOwnerWatch(const QString &service, std::function<void()> left);

private:
    QDBusServiceWatcher watcher_;
};

} // namespace glimmerpane
