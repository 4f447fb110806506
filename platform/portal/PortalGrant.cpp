// SPDX-License-Identifier: MIT
#include "platform/portal/PortalGrant.h"

#include "platform/Log.h"
#include "platform/portal/PortalSession.h"

#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>

#include <utility>

namespace glimmerpane::portal
{

namespace
{

/** A pair of numbers among a stream's properties. */
std::optional<QPoint> pairIn(const QVariantMap &properties, const char *name)
{
    const QVariant value = properties.value(QLatin1String(name));
    if (!value.canConvert<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    int first = 0;
    int second = 0;
    argument.beginStructure();
    argument >> first >> second;
    argument.endStructure();
    return QPoint(first, second);
}

/** The first stream of the answer, of type a(ua{sv}). */
std::optional<std::pair<uint, QVariantMap>> streamIn(const QVariantMap &results)
{
    const QVariant value = results.value(QStringLiteral("streams"));
    if (!value.canConvert<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    std::pair<uint, QVariantMap> stream;
    argument.beginArray();
    if (argument.atEnd()) {
        return std::nullopt;
    }
    argument.beginStructure();
    argument >> stream.first >> stream.second;
    return stream;
}

QVariantMap wantedSources(const QString &token, uint cursorModes, PointerWish pointer)
{
    constexpr uint monitor = 1;
    constexpr uint embedded = 2;
    constexpr uint asMetadata = 4;
    constexpr uint untilRevoked = 2;
    const uint wanted = pointer == PointerWish::Apart ? asMetadata : embedded;
    const uint other = pointer == PointerWish::Apart ? embedded : asMetadata;
    QVariantMap options{
        {QStringLiteral("types"), monitor},
        {QStringLiteral("multiple"), false},
        {QStringLiteral("cursor_mode"), (cursorModes & wanted) != 0 ? wanted : other},
        {QStringLiteral("persist_mode"), untilRevoked}};
    if (!token.isEmpty()) {
        options[QStringLiteral("restore_token")] = token;
    }
    return options;
}

Error withoutStream()
{
    return {.text = Error::tr("The desktop could not start to record the screen."),
            .log = QStringLiteral("the portal's answer names no stream")};
}

} // namespace

PortalGrant::PortalGrant(std::unique_ptr<PortalSession> session)
    : session_(std::move(session))
{
}

PortalGrant::PortalGrant(PortalGrant &&other) noexcept = default;
PortalGrant &PortalGrant::operator=(PortalGrant &&other) noexcept = default;
PortalGrant::~PortalGrant() = default;

void PortalGrant::onClosed(std::function<void()> closed)
{
    session_->onClosed(std::move(closed));
}

QCoro::Task<std::expected<PortalGrant, Error>> PortalGrant::ask(PortalRequests &requests,
                                                                QString token, PointerWish pointer)
{
    const QVariant modesValue
        = co_await screenCast().property(QStringLiteral("AvailableCursorModes"));
    const uint modes = modesValue.toUInt();
    auto created = co_await createSession(requests);
    if (!created && created.error().outcome == Outcome::failed) {
        // portal-gnome 43 sometimes refuses a session right after a dialog was withdrawn.
        created = co_await createSession(requests);
    }
    if (!created) {
        co_return std::unexpected(created.error());
    }
    PortalGrant grant(std::make_unique<PortalSession>(*created));
    const QVariantList session{grant.session_->handle()};
    const QVariantMap sources = wantedSources(token, modes, pointer);
    const auto selected = co_await requests.ask(QStringLiteral("SelectSources"), session, sources);
    if (!selected) {
        co_return std::unexpected(selected.error());
    }
    const QVariantList sessionAndParent{grant.session_->handle(), QString()};
    const QVariantMap noOptions;
    const auto started
        = co_await requests.ask(QStringLiteral("Start"), sessionAndParent, noOptions);
    if (!started) {
        co_return std::unexpected(started.error());
    }
    const auto stream = streamIn(*started);
    if (!stream) {
        co_return std::unexpected(withoutStream());
    }
    const QVariantList sessionAndOptions{grant.session_->handle(), QVariantMap()};
    const auto remote
        = co_await screenCast().call(QStringLiteral("OpenPipeWireRemote"), sessionAndOptions);
    if (!remote) {
        co_return std::unexpected(remote.error());
    }
    auto descriptor = remote->value(0).value<QDBusUnixFileDescriptor>();
    grant.node = stream->first;
    grant.remote = FileDescriptor(descriptor.takeFileDescriptor());
    grant.position = pairIn(stream->second, "position");
    if (const auto extent = pairIn(stream->second, "size")) {
        grant.size = QSize(extent->x(), extent->y());
    }
    grant.token = started->value(QStringLiteral("restore_token")).toString();
    qCInfo(platformLog) << "the portal grants node" << grant.node << "at"
                        << grant.position.value_or(QPoint()) << "of size"
                        << grant.size.value_or(QSize()) << "cursor modes" << modes;
    co_return grant;
}

} // namespace glimmerpane::portal
