// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <expected>
#include <functional>
#include <optional>
#include <vector>

namespace glimmerpane
{

/** Why a call over the bus fails, as its caller hears it. */
struct CallError {
    QString name; ///< a D-Bus error name
    QString text;
};

using CallResult = std::expected<QVariantList, CallError>;
using CallReply = std::function<void(const CallResult &)>;

/** The error for arguments of another type, or out of range. */
CallError invalidArguments(const QString &text);

/** A value in a call, by its D-Bus signature. */
struct ServedArgument {
    QString signature;
    QString name;
};

/** A method that other programs can call. */
struct ServedMethod {
    QString name;
    std::vector<ServedArgument> takes;
    std::vector<ServedArgument> gives;
    /** Gets arguments of the right types, and replies exactly once, at once or later. */
    std::function<void(const QVariantList &arguments, const CallReply &reply)> call;
};

/** How other programs hear of a property's changes. */
enum class PropertyChange {
    Announced, ///< by a signal
    Silent, ///< by asking
    Never, ///< it has none
};

/** A property that other programs can read. */
struct ServedProperty {
    QString name;
    QString signature;
    PropertyChange change;
    std::function<QVariant()> value;
    /** Null if it cannot be set. Gets a value of the right type, and replies as a method does. */
    std::function<void(const QVariant &value, const CallReply &reply)> set;
};

/** One of an object's interfaces. */
struct ServedInterface {
    QString name;
    std::vector<ServedMethod> methods;
    std::vector<ServedProperty> properties;
};

/**
 * An object of this program's on the session bus. Describes its interfaces to whoever asks, as
 * org.freedesktop.DBus.Introspectable and Properties are specified. Unlike Qt's adaptors, it can
 * refuse a property's value or answer it later. Main thread.
 */
class ServedObject : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit ServedObject(QString path);
    ~ServedObject() override;

    /** For before it is shown. What it calls must outlive this object. */
    void add(ServedInterface interface);
    /** Answers calls from now on. */
    void showOn(const QDBusConnection &bus);

    /**
     * Announces, once the caller has returned to the event loop, those properties that have another
     * value than announced last. Callers of methods hear of them before their answer.
     */
    void announceChanges();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    void announceNow();
    CallReply replyTo(const QDBusMessage &message);
    ServedInterface properties();
    CallResult get(const QString &interface, const QString &property) const;
    CallResult getAll(const QString &interface) const;
    void set(const QString &interface, const QString &property, const QVariant &value,
             const CallReply &reply);

    const QString path_;
    std::vector<ServedInterface> interfaces_;
    std::vector<QVariantMap> announced_; ///< for each interface, by property
    std::optional<QDBusConnection> bus_; ///< null unless it is shown
    bool isAnnouncing_ = false; ///< as soon as the event loop runs
};

} // namespace glimmerpane
