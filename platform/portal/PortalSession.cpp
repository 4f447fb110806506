// SPDX-License-Identifier: MIT
#include "platform/portal/PortalSession.h"

#include <QDBusObjectPath>
#include <QUuid>

#include <utility>

namespace glimmerpane::portal
{

QCoro::Task<std::expected<QString, Error>> createSession(PortalRequests &requests)
{
    const QVariantList nothing;
    const QVariantMap naming{
        {QStringLiteral("session_handle_token"),
         QStringLiteral("glimmerpane_") + QUuid::createUuid().toString(QUuid::Id128)}};
    const auto created = co_await requests.ask(QStringLiteral("CreateSession"), nothing, naming);
    if (!created) {
        co_return std::unexpected(created.error());
    }
    co_return created->value(QStringLiteral("session_handle")).toString();
}

PortalSession::PortalSession(const QString &path)
    : object_{.service = screenCast().service,
              .path = path,
              .interface = QStringLiteral("org.freedesktop.portal.Session")}
    , closed_(object_, QStringLiteral("Closed"), [this](const QVariantList &) {
        isClosed_ = true;
        if (onClosed_) {
            onClosed_();
        }
    })
{
}

PortalSession::~PortalSession()
{
    if (!isClosed_) {
        object_.send(QStringLiteral("Close"));
    }
}

QVariant PortalSession::handle() const
{
    return QVariant::fromValue(QDBusObjectPath(object_.path));
}

void PortalSession::onClosed(std::function<void()> closed)
{
    onClosed_ = std::move(closed);
    if (isClosed_ && onClosed_) {
        onClosed_();
    }
}

} // namespace glimmerpane::portal
