// SPDX-License-Identifier: MIT
#include "platform/portal/PortalShortcuts.h"

#include "platform/Log.h"
#include "platform/portal/PortalSession.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QPointer>

namespace glimmerpane::portal
{

/** As on the bus. */
struct BoundShortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const BoundShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, BoundShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace
{

using Result = PortalShortcuts::Result;

const BusObject &globalShortcuts()
{
    static const BusObject object{
        .service = screenCast().service,
        .path = screenCast().path,
        .interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts")};
    return object;
}

std::unexpected<Error> unavailable()
{
    return std::unexpected(
        Error{.text = Error::tr("This desktop does not let programs set shortcuts. "
                                "docs/shortcuts.md says how to set them in its own settings."),
              .log = QStringLiteral("there is no GlobalShortcuts portal"),
              .outcome = Outcome::unavailable});
}

std::unexpected<Error> withdrawn()
{
    return std::unexpected(Error{.text = Error::tr("The shortcuts were turned off meanwhile."),
                                 .log = {},
                                 .outcome = Outcome::cancelled});
}

/** The portal's requests speak of recording the screen. */
std::unexpected<Error> aboutShortcuts(Error error)
{
    error.text = error.outcome == Outcome::cancelled
        ? Error::tr("The shortcuts were declined.")
        : Error::tr("The desktop could not set up the shortcuts. docs/shortcuts.md says how to set "
                    "them in its own settings.");
    return std::unexpected(std::move(error));
}

} // namespace

PortalShortcuts::PortalShortcuts()
    : requests_(std::make_shared<PortalRequests>(globalShortcuts()))
{
    qDBusRegisterMetaType<BoundShortcut>();
    qDBusRegisterMetaType<QList<BoundShortcut>>();
}

PortalShortcuts::~PortalShortcuts()
{
    requests_->withdraw();
}

QCoro::Task<Result> PortalShortcuts::open()
{
    if (!globalShortcuts().isThere()) {
        co_return unavailable();
    }
    const QPointer self(this);
    const auto requests = requests_; // must outlive what is asked
    const QVariant version = co_await globalShortcuts().property(QStringLiteral("version"));
    if (!self) {
        co_return withdrawn();
    }
    if (version.toUInt() == 0) {
        co_return unavailable();
    }
    const auto created = co_await createSession(*requests);
    if (!created) {
        co_return aboutShortcuts(created.error());
    }
    auto session = std::make_unique<PortalSession>(*created);
    if (!self) {
        co_return withdrawn();
    }
    session_ = std::move(session);
    session_->onClosed([this] { Q_EMIT ended(false); });
    portal_ = std::make_unique<BusOwnerWatch>(globalShortcuts().service,
                                              [this] { Q_EMIT ended(true); });
    activated_ = std::make_unique<BusSignal>(
        globalShortcuts(), QStringLiteral("Activated"), [this](const QVariantList &values) {
            if (values.size() >= 2 && values[0] == session_->handle()) {
                Q_EMIT pressed(values[1].toString());
            }
        });
    co_return Result();
}

QCoro::Task<Result> PortalShortcuts::bind(std::vector<Shortcut> shortcuts)
{
    QList<BoundShortcut> list;
    for (const auto &[id, description] : shortcuts) {
        list.append({.id = id, .properties = {{QStringLiteral("description"), description}}});
    }
    const QVariantList arguments{session_->handle(), QVariant::fromValue(list), QString()};
    const QVariantMap noOptions;
    const auto requests = requests_; // must outlive what is asked
    const auto bound
        = co_await requests->ask(QStringLiteral("BindShortcuts"), arguments, noOptions);
    if (!bound) {
        co_return aboutShortcuts(bound.error());
    }
    qCInfo(platformLog, "the portal has set shortcuts");
    co_return Result();
}

} // namespace glimmerpane::portal
