// SPDX-License-Identifier: MIT
#include "platform/bus/ServedObject.h"

#include "platform/Log.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace glimmerpane
{

namespace
{

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

CallError errorOf(const char *kind, const QString &text)
{
    return {.name = QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(kind),
            .text = text};
}

/** The member of that name; with an empty interface name, of any interface. */
template<typename Member>
const Member *find(const std::vector<ServedInterface> &interfaces,
                   std::vector<Member> ServedInterface::*members, const QString &interface,
                   const QString &name)
{
    for (const ServedInterface &candidate : interfaces) {
        const auto found = std::ranges::find(candidate.*members, name, &Member::name);
        if ((interface.isEmpty() || interface == candidate.name)
            && found != (candidate.*members).end()) {
            return &*found;
        }
    }
    return nullptr;
}

QString signatureOf(const std::vector<ServedArgument> &arguments)
{
    QString signature;
    for (const ServedArgument &argument : arguments) {
        signature += argument.signature;
    }
    return signature;
}

QVariantMap announcedIn(const ServedInterface &interface)
{
    QVariantMap values;
    for (const ServedProperty &property : interface.properties) {
        if (property.change == PropertyChange::Announced) {
            values.insert(property.name, property.value());
        }
    }
    return values;
}

CallError unknownProperty(const QString &name)
{
    return errorOf("UnknownProperty", QStringLiteral("There is no property '%1'.").arg(name));
}

// Names and signatures are this program's own and contain nothing that XML would have to escape.

QString describe(const std::vector<ServedArgument> &arguments, const char *direction)
{
    QString text;
    for (const auto &[signature, name] : arguments) {
        text += QStringLiteral("   <arg name=\"%1\" type=\"%2\" direction=\"%3\"/>\n")
                    .arg(name, signature, QLatin1String(direction));
    }
    return text;
}

QString describe(const ServedProperty &property)
{
    const auto changes = [&] {
        switch (property.change) {
        case PropertyChange::Silent:
            return "false";
        case PropertyChange::Never:
            return "const";
        default:
            return "true";
        }
    }();
    return QStringLiteral("  <property name=\"%1\" type=\"%2\" access=\"%3\">\n"
                          "   <annotation name=\"%4.EmitsChangedSignal\" value=\"%5\"/>\n"
                          "  </property>\n")
        .arg(property.name, property.signature, QLatin1String(property.set ? "readwrite" : "read"),
             QStringLiteral("org.freedesktop.DBus.Property"), QLatin1String(changes));
}

} // namespace

CallError invalidArguments(const QString &text)
{
    return errorOf("InvalidArgs", text);
}

ServedObject::ServedObject(QString path)
    : path_(std::move(path))
    , interfaces_{properties()}
{
}

ServedObject::~ServedObject()
{
    if (bus_) {
        bus_->unregisterObject(path_);
    }
}

void ServedObject::add(ServedInterface interface)
{
    interfaces_.push_back(std::move(interface));
}

void ServedObject::showOn(const QDBusConnection &bus)
{
    for (const ServedInterface &interface : interfaces_) {
        announced_.push_back(announcedIn(interface));
    }
    bus_ = bus;
    bus_->registerVirtualObject(path_, this);
}

void ServedObject::announceChanges()
{
    if (bus_ && !std::exchange(isAnnouncing_, true)) {
        QMetaObject::invokeMethod(this, &ServedObject::announceNow, Qt::QueuedConnection);
    }
}

void ServedObject::announceNow()
{
    isAnnouncing_ = false;
    for (std::size_t i = 0; i < interfaces_.size(); ++i) {
        QVariantMap changed = announcedIn(interfaces_[i]);
        const QVariantMap before = std::exchange(announced_[i], changed);
        changed.removeIf([&](const auto &entry) { return before[entry.key()] == entry.value(); });
        if (!changed.isEmpty()) {
            auto signal = QDBusMessage::createSignal(path_, propertiesInterface,
                                                     QStringLiteral("PropertiesChanged"));
            signal.setArguments({interfaces_[i].name, changed, QStringList()});
            bus_->send(signal);
        }
    }
}

QString ServedObject::introspect(const QString & /*path*/) const
{
    QString text;
    for (const ServedInterface &interface : interfaces_) {
        if (interface.name == propertiesInterface) {
            continue; // Qt describes it
        }
        text += QStringLiteral(" <interface name=\"%1\">\n").arg(interface.name);
        for (const ServedMethod &method : interface.methods) {
            text += QStringLiteral("  <method name=\"%1\">\n").arg(method.name)
                + describe(method.takes, "in") + describe(method.gives, "out")
                + QStringLiteral("  </method>\n");
        }
        for (const ServedProperty &property : interface.properties) {
            text += describe(property);
        }
        text += QStringLiteral(" </interface>\n");
    }
    return text;
}

bool ServedObject::handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/)
{
    const QString interface = message.interface();
    const auto isAsked = [&](const ServedInterface &candidate) {
        return interface.isEmpty() || interface == candidate.name;
    };
    if (!std::ranges::any_of(interfaces_, isAsked)) {
        return false; // Qt answers for the others
    }
    const CallReply reply = replyTo(message);
    const auto *const method
        = find(interfaces_, &ServedInterface::methods, interface, message.member());
    if (method == nullptr) {
        if (interface.isEmpty()) {
            return false;
        }
        const QString text = QStringLiteral("There is no method '%1'.").arg(message.member());
        reply(std::unexpected(errorOf("UnknownMethod", text)));
        return true;
    }
    const QString expected = signatureOf(method->takes);
    if (message.signature() != expected) {
        reply(std::unexpected(
            invalidArguments(QStringLiteral("%1 takes arguments of the types '%2', not '%3'.")
                                 .arg(method->name, expected, message.signature()))));
        return true;
    }
    qCInfo(platformLog) << "call of" << method->name << message.arguments();
    method->call(message.arguments(), reply);
    return true;
}

/** Announces what the call has changed before it is answered. */
CallReply ServedObject::replyTo(const QDBusMessage &message)
{
    return [self = QPointer(this), bus = *bus_, message](const CallResult &result) {
        if (self) {
            self->announceNow();
        }
        if (message.isReplyRequired()) {
            bus.send(result ? message.createReply(*result)
                            : message.createErrorReply(result.error().name, result.error().text));
        }
    };
}

ServedInterface ServedObject::properties()
{
    const ServedArgument interface{.signature = QStringLiteral("s"),
                                   .name = QStringLiteral("interface")};
    const ServedArgument property{.signature = QStringLiteral("s"),
                                  .name = QStringLiteral("property")};
    const ServedArgument value{.signature = QStringLiteral("v"), .name = QStringLiteral("value")};
    const ServedArgument values{.signature = QStringLiteral("a{sv}"),
                                .name = QStringLiteral("values")};
    return {.name = propertiesInterface,
            .methods = {{.name = QStringLiteral("Get"),
                         .takes = {interface, property},
                         .gives = {value},
                         .call =
                             [this](const auto &asked, const auto &reply) {
                                 reply(get(asked[0].toString(), asked[1].toString()));
                             }},
                        {.name = QStringLiteral("GetAll"),
                         .takes = {interface},
                         .gives = {values},
                         .call = [this](const auto &asked,
                                        const auto &reply) { reply(getAll(asked[0].toString())); }},
                        {.name = QStringLiteral("Set"),
                         .takes = {interface, property, value},
                         .gives = {},
                         .call =
                             [this](const auto &asked, const auto &reply) {
                                 set(asked[0].toString(), asked[1].toString(),
                                     asked[2].template value<QDBusVariant>().variant(), reply);
                             }}},
            .properties = {}};
}

CallResult ServedObject::get(const QString &interface, const QString &name) const
{
    const auto *const property = find(interfaces_, &ServedInterface::properties, interface, name);
    if (property == nullptr) {
        return std::unexpected(unknownProperty(name));
    }
    return QVariantList{QVariant::fromValue(QDBusVariant(property->value()))};
}

CallResult ServedObject::getAll(const QString &interface) const
{
    bool isKnown = interface.isEmpty();
    QVariantMap values;
    for (const ServedInterface &candidate : interfaces_) {
        if (interface.isEmpty() || interface == candidate.name) {
            isKnown = true;
            for (const ServedProperty &property : candidate.properties) {
                values.insert(property.name, property.value());
            }
        }
    }
    if (!isKnown) {
        return std::unexpected(errorOf(
            "UnknownInterface", QStringLiteral("There is no interface '%1'.").arg(interface)));
    }
    return QVariantList{values};
}

void ServedObject::set(const QString &interface, const QString &name, const QVariant &value,
                       const CallReply &reply)
{
    const auto *const property = find(interfaces_, &ServedInterface::properties, interface, name);
    if (property == nullptr) {
        reply(std::unexpected(unknownProperty(name)));
    } else if (!property->set) {
        reply(std::unexpected(
            errorOf("PropertyReadOnly", QStringLiteral("%1 cannot be set.").arg(name))));
    } else if (QLatin1String(QDBusMetaType::typeToSignature(value.metaType()))
               != property->signature) {
        reply(std::unexpected(invalidArguments(
            QStringLiteral("%1 takes a value of the type '%2'.").arg(name, property->signature))));
    } else {
        property->set(value, reply);
    }
}

} // namespace glimmerpane
