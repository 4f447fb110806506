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

QDBusMessage callOf(const BusObject &object, const QString &method, const QVariantList &arguments)
{
    auto message
        = QDBusMessage::createMethodCall(object.service, object.path, object.interface, method);
    message.setArguments(arguments);
    return message;
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

QVariant BusObject::property(const QString &name) const
{
    const BusObject properties{.service = service,
                               .path = path,
                               .interface = QStringLiteral("org.freedesktop.DBus.Properties")};
    constexpr int longestWait = 2000; // milliseconds
    const auto reply = QDBusConnection::sessionBus().call(
        callOf(properties, QStringLiteral("Get"), {interface, name}), QDBus::Block, longestWait);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

} // namespace glimmerpane
