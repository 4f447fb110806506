// SPDX-License-Identifier: MIT
#include "ui/ColorSchemePortal.h"

#include "platform/SessionBus.h"

#include <QCoroFuture>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPointer>
#include <QtConcurrent>

namespace glimmerpane
{

namespace
{

QString service()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString path()
{
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString interface()
{
    return QStringLiteral("org.freedesktop.portal.Settings");
}

QString appearanceGroup()
{
    return QStringLiteral("org.freedesktop.appearance");
}

QString colorSchemeKey()
{
    return QStringLiteral("color-scheme");
}

} // namespace

QCoro::Task<> ColorSchemePortal::start()
{
    if (!isSessionBusThere()) {
        co_return;
    }
    const QPointer self(this);
    // Connecting waits for the bus, so another thread does it; all threads share the connection.
    auto connecting = QtConcurrent::run([] { return QDBusConnection::sessionBus().isConnected(); });
    const bool isConnected = co_await connecting;
    if (self && isConnected) {
        follow();
    }
}

void ColorSchemePortal::follow()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    qRegisterMetaType<QDBusVariant>(); // otherwise the slot is refused: its type has no name yet
    // From any sender: naming the service would wait for the bus to look it up.
    bus.connect({}, path(), interface(), QStringLiteral("SettingChanged"),
                {appearanceGroup(), colorSchemeKey()}, {}, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));

    QDBusMessage read
        = QDBusMessage::createMethodCall(service(), path(), interface(), QStringLiteral("Read"));
    read << appearanceGroup() << colorSchemeKey();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) {
            tell(reply.value().variant());
        }
    });
}

void ColorSchemePortal::settingChanged(const QString &group, const QString &key,
                                       const QDBusVariant &value)
{
    if (group == appearanceGroup() && key == colorSchemeKey()) {
        tell(value.variant());
    }
}

void ColorSchemePortal::tell(const QVariant &value)
{
    QVariant inner = value;
    while (inner.userType() == qMetaTypeId<QDBusVariant>()) { // Read() wraps the value twice
        inner = inner.value<QDBusVariant>().variant();
    }
    bool isNumber = false;
    const uint number = inner.toUInt(&isNumber);
    if (!isNumber) {
        return;
    }
    switch (number) {
    case static_cast<uint>(ColorScheme::Dark):
        Q_EMIT colorSchemeTold(ColorScheme::Dark);
        break;
    case static_cast<uint>(ColorScheme::Light):
        Q_EMIT colorSchemeTold(ColorScheme::Light);
        break;
    default: // unknown numbers also mean no preference
        Q_EMIT colorSchemeTold(ColorScheme::NoPreference);
    }
}

} // namespace glimmerpane
