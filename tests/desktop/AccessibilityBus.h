// SPDX-License-Identifier: MIT
#pragma once

#include "rig/SessionBus.h"
#include "rig/XvfbServer.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTemporaryDir>

#include <optional>

namespace glimmerpane::testing
{

/** How AT-SPI names an object, and what it says of others. */
struct AccessibleReference {
    QString service;
    QDBusObjectPath path;
};
struct AccessibleRelation {
    unsigned type = 0;
    QList<AccessibleReference> targets;
};

inline const QDBusArgument &operator>>(const QDBusArgument &argument, AccessibleReference &to)
{
    argument.beginStructure();
    argument >> to.service >> to.path;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, AccessibleRelation &to)
{
    argument.beginStructure();
    argument >> to.type >> to.targets;
    argument.endStructure();
    return argument;
}

/** The answer to a call; one without a value where it failed. */
inline QVariant askOverBus(const QDBusConnection &bus, const AccessibleReference &object,
                           const QString &interface, const char *method,
                           const QVariantList &arguments = {})
{
    auto message = QDBusMessage::createMethodCall(object.service, object.path.path(), interface,
                                                  QLatin1String(method));
    message.setArguments(arguments);
    return bus.call(message).arguments().value(0);
}

/** One element of a program's interface, as a screen reader sees it. Empty once it is gone. */
class AccessibleObject
{
public:
    AccessibleObject(QDBusConnection bus, AccessibleReference reference)
        : bus_(std::move(bus))
        , reference_(std::move(reference))
    {
    }

    QString name() const { return property("Name").toString(); }
    QString description() const { return property("Description").toString(); }
    unsigned role() const { return call("Accessible", "GetRole").toUInt(); } ///< an AtspiRole

    bool hasState(unsigned state) const ///< an AtspiStateType
    {
        const auto words = qdbus_cast<QList<unsigned>>(call("Accessible", "GetState"));
        return ((words.value(state / 32) >> (state % 32)) & 1U) != 0;
    }

    /** The names of what labels it. */
    QStringList labels() const
    {
        constexpr unsigned labelledBy = 2; // an AtspiRelationType
        QStringList names;
        for (const auto &[type, targets] :
             qdbus_cast<QList<AccessibleRelation>>(call("Accessible", "GetRelationSet"))) {
            for (const AccessibleReference &target : targets) {
                if (type == labelledBy) {
                    names.append(AccessibleObject(bus_, target).name());
                }
            }
        }
        return names;
    }

    /** Does what it offers first, which is to be pressed for a button. */
    bool press() const
    {
        return call("Action", "GetName", {0}) == QStringLiteral("Press")
            && call("Action", "DoAction", {0}).toBool();
    }

    bool setText(const QString &text) const
    {
        return call("EditableText", "SetTextContents", {text}).toBool();
    }
    QString text() const { return call("Text", "GetText", {0, -1}).toString(); }

    /** The first one below this one with the role and the name. */
    std::optional<AccessibleObject> find(unsigned role, const QString &name) const
    {
        for (const auto &reference :
             qdbus_cast<QList<AccessibleReference>>(call("Accessible", "GetChildren"))) {
            const AccessibleObject child(bus_, reference);
            if (child.name() == name && child.role() == role) {
                return child;
            }
            if (const auto found = child.find(role, name)) {
                return found;
            }
        }
        return std::nullopt;
    }

private:
    QVariant call(const char *interface, const char *method,
                  const QVariantList &arguments = {}) const
    {
        return askOverBus(bus_, reference_,
                          QStringLiteral("org.a11y.atspi.") + QLatin1String(interface), method,
                          arguments);
    }
    QVariant property(const char *name) const
    {
        const QVariant value
            = askOverBus(bus_, reference_, QStringLiteral("org.freedesktop.DBus.Properties"), "Get",
                         {QStringLiteral("org.a11y.atspi.Accessible"), QLatin1String(name)});
        return value.value<QDBusVariant>().variant();
    }

    QDBusConnection bus_;
    AccessibleReference reference_;
};

/** A session bus and the accessibility bus that belongs to it, with a screen reader on it: us. */
class AccessibilityBus
{
public:
    explicit AccessibilityBus(const XvfbServer &server)
    {
        QProcessEnvironment environment = server.environment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
        daemon_ = required(SessionBus::start(environment));
        const auto session = QDBusConnection::connectToBus(address(), sessionName_);
        const AccessibleReference launcher{QStringLiteral("org.a11y.Bus"),
                                           QDBusObjectPath(QStringLiteral("/org/a11y/bus"))};
        // Screen readers do this, so that programs expose their interface.
        askOverBus(session, launcher, QStringLiteral("org.freedesktop.DBus.Properties"), "Set",
                   {QStringLiteral("org.a11y.Status"), QStringLiteral("IsEnabled"),
                    QVariant::fromValue(QDBusVariant(true))});
        const QString bus
            = askOverBus(session, launcher, QStringLiteral("org.a11y.Bus"), "GetAddress")
                  .toString();
        if (!QDBusConnection::connectToBus(bus, busName_).isConnected()) {
            qFatal("no accessibility bus at %s", qPrintable(bus));
        }
    }
    AccessibilityBus(const AccessibilityBus &) = delete;
    AccessibilityBus &operator=(const AccessibilityBus &) = delete;
    ~AccessibilityBus()
    {
        QDBusConnection::disconnectFromBus(busName_);
        QDBusConnection::disconnectFromBus(sessionName_);
    }

    /** For DBUS_SESSION_BUS_ADDRESS. */
    QString address() const { return daemon_->address(); }

    /** Looks through all programs. */
    std::optional<AccessibleObject> find(unsigned role, const QString &name) const
    {
        const AccessibleReference root{
            QStringLiteral("org.a11y.atspi.Registry"),
            QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root"))};
        return AccessibleObject(QDBusConnection(busName_), root).find(role, name);
    }

private:
    const QString sessionName_ = QStringLiteral("session");
    const QString busName_ = QStringLiteral("accessibility");
    QTemporaryDir folder_;
    std::optional<SessionBus> daemon_;
};

} // namespace glimmerpane::testing
