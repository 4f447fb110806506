// SPDX-License-Identifier: MIT
#include "platform/portal/PortalRequest.h"

#include <QCoroFuture>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QUuid>

#include <utility>

namespace glimmerpane::portal
{

namespace
{

Error withdrawn()
{
    return {.text = Error::tr("Sharing was stopped before it started."),
            .log = QStringLiteral("the request to the portal was withdrawn"),
            .outcome = Outcome::cancelled};
}

/** The object for a request with this token. Its path is known before the request is made. */
BusObject requestObject(const QString &token)
{
    const QString sender
        = QDBusConnection::sessionBus().baseService().sliced(1).replace(u'.', u'_');
    return {.service = screenCast().service,
            .path
            = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token),
            .interface = QStringLiteral("org.freedesktop.portal.Request")};
}

PortalAnswer answerOf(const QVariantList &response, const QString &method)
{
    constexpr uint granted = 0;
    constexpr uint declined = 1;
    const uint code = response.value(0).toUInt();
    const QString log = QStringLiteral("%1: response %2").arg(method).arg(code);
    if (code == granted) {
        return qdbus_cast<QVariantMap>(response.value(1));
    }
    if (code == declined) {
        return std::unexpected(Error{.text = Error::tr("The recording of the screen was declined."),
                                     .log = log,
                                     .outcome = Outcome::cancelled});
    }
    return std::unexpected(
        Error{.text = Error::tr("The desktop could not start to record the screen."), .log = log});
}

} // namespace

const BusObject &screenCast()
{
    static const BusObject object{.service = QStringLiteral("org.freedesktop.portal.Desktop"),
                                  .path = QStringLiteral("/org/freedesktop/portal/desktop"),
                                  .interface = QStringLiteral("org.freedesktop.portal.ScreenCast")};
    return object;
}

QCoro::Task<PortalAnswer> PortalRequests::ask(QString method, QVariantList arguments,
                                              QVariantMap options)
{
    if (isWithdrawn_) {
        co_return std::unexpected(withdrawn());
    }
    const QString token
        = QStringLiteral("glimmerpane_") + QUuid::createUuid().toString(QUuid::Id128);
    const auto answer = std::make_shared<Answer<PortalAnswer>>();
    waiting_ = Waiting{.request = requestObject(token), .answer = answer};
    const BusSignal response(
        waiting_->request, QStringLiteral("Response"),
        [answer, method](const QVariantList &values) { answer->give(answerOf(values, method)); });
    const BusOwnerWatch portal(portal_.service, [answer] {
        answer->give(std::unexpected(
            Error{.text = Error::tr("The desktop's portal has ended."),
                  .log = QStringLiteral("org.freedesktop.portal.Desktop lost its owner")}));
    });
    options[QStringLiteral("handle_token")] = token;
    arguments.append(options);
    const auto called = co_await portal_.call(method, arguments);
    if (!called) {
        answer->give(std::unexpected(called.error()));
    }
    auto result = co_await answer->future();
    waiting_.reset();
    co_return result;
}

void PortalRequests::withdraw()
{
    isWithdrawn_ = true;
    if (waiting_) {
        waiting_->request.send(QStringLiteral("Close"));
        waiting_->answer->give(std::unexpected(withdrawn()));
    }
}

} // namespace glimmerpane::portal
