// SPDX-License-Identifier: MIT
#include "platform/Notification.h"

#include "platform/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

namespace glimmerpane
{

void sendNotification(const QString &title, const QString &text)
{
    if (!isSessionBusThere()) {
        return;
    }
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call
        = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                         service, QStringLiteral("Notify"));
    constexpr uint replacesNone = 0;
    constexpr int serversChoice = -1; // expiration timeout chosen by the server
    constexpr uchar critical = 2; // the only urgency that does not expire
    const QString icon = QStringLiteral("io.github.glimmerpane.Glimmerpane");
    const QVariantMap hints{{QStringLiteral("urgency"), QVariant::fromValue(critical)},
                            {QStringLiteral("desktop-entry"), icon}};
    call << QStringLiteral("Glimmerpane") << replacesNone << icon << title << text << QStringList()
         << hints << serversChoice;
    QDBusConnection::sessionBus().send(call);
}

} // namespace glimmerpane
