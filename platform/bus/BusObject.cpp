// SPDX-License-Identifier: MIT
#include "platform/bus/BusObject.h"

#include "platform/SessionBus.h"

#include <QCoroDBusPendingCall>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>

namespace glimmerpane
{

namespace
{

constexpr int longestWait = 2000; // milliseconds

QDBusMessage callOf(const BusObject &object, const QString &method, const QVariantList &arguments)
{
    auto message
        = QDBusMessage::createMethodCall(object.service, object.path, object.interface, method);
    message.setArguments(arguments);
    return message;
}

QDBusMessage readingOf(const BusObject &object, const QString &property)
{
    const BusObject properties{.service = object.service,
                               .path = object.path,
                               .interface = QStringLiteral("org.freedesktop.DBus.Properties")};
    return callOf(properties, QStringLiteral("Get"), {object.interface, property});
}

QVariant valueIn(const QDBusMessage &reply)
{
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

} // namespace

bool BusObject::isThere() const
{
    if (!isSessionBusThere()) {
        return false;
    }
    const auto bus = QDBusConnection::sessionBus();
    return bus.isConnected()
        && (bus.interface()->isServiceRegistered(service)
            || bus.interface()->activatableServiceNames().value().contains(service));
}

QCoro::Task<std::expected<QVariantList, Error>> BusObject::call(QString method,
                                                                QVariantList arguments) const
{
    const auto pending = QDBusConnection::sessionBus().asyncCall(callOf(*this, method, arguments));
    const QDBusMessage reply = co_await pending;
    if (reply.type() != QDBusMessage::ReplyMessage) {
        co_return std::unexpected(Error{
            .text
            = Error::tr("The desktop does not record the screen: %1").arg(reply.errorMessage()),
            .log
            = QStringLiteral("%1: %2: %3").arg(method, reply.errorName(), reply.errorMessage())});
    }
    co_return reply.arguments();
}

void BusObject::send(const QString &method, const QVariantList &arguments) const
{
    auto message = callOf(*this, method, arguments);
    message.setAutoStartService(false);
    QDBusConnection::sessionBus().send(message);
}

QCoro::Task<QVariant> BusObject::property(QString name) const
{
    const auto reply = co_await QDBusConnection::sessionBus().asyncCall(readingOf(*this, name));
    co_return valueIn(reply);
}

QVariant BusObject::propertyNow(const QString &name) const
{
    return valueIn(
        QDBusConnection::sessionBus().call(readingOf(*this, name), QDBus::Block, longestWait));
}

} // namespace glimmerpane
