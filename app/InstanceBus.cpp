// SPDX-License-Identifier: MIT
#include "app/InstanceBus.h"

#include "platform/SessionBus.h"
#include "platform/backends/Backends.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QScopeGuard>

#include <chrono>
#include <utility>

namespace glimmerpane
{

namespace
{

using namespace std::chrono_literals;

// For a query that the main thread answers as soon as it can.
constexpr std::chrono::milliseconds quickAnswer = 1500ms;
// The desktop may first ask its user for a display.
constexpr std::chrono::milliseconds longestWait = 10min;

QString name()
{
    return QStringLiteral("io.github.glimmerpane.Glimmerpane");
}

QString path()
{
    return QStringLiteral("/io/github/glimmerpane/Glimmerpane");
}

CommandResult resultOf(const QDBusMessage &reply)
{
    const QVariantList values = reply.arguments();
    if (reply.type() == QDBusMessage::ReplyMessage && values.size() == 3) {
        return {.exitCode = ExitCode(values[0].toInt()),
                .output = values[1].toString(),
                .error = values[2].toString()};
    }
    return CommandResult::failure(InstanceBus::tr("Glimmerpane is running but does not respond: %1")
                                      .arg(reply.errorMessage()));
}

QDBusMessage call(const QDBusConnection &bus, const QString &method, const QVariantList &arguments,
                  std::chrono::milliseconds limit)
{
    QDBusMessage message = QDBusMessage::createMethodCall(name(), path(), name(), method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, int(limit.count()));
}

/**
 * Why the running instance must not be sent a command, judging by its answer about its display. A
 * suspended process would carry it out much later, and one on another display out of sight.
 */
std::optional<CommandResult> objection(const QDBusMessage &answer)
{
    if (answer.errorName() == u"org.freedesktop.DBus.Error.NoReply") {
        return CommandResult::failure(
            InstanceBus::tr("Glimmerpane is running but does not respond."));
    }
    // Older versions lack the method.
    const bool isReply = answer.type() == QDBusMessage::ReplyMessage;
    const QString theirs = isReply ? answer.arguments().value(0).toString() : QString();
    const QString ours = displayName();
    if (theirs.isEmpty() || ours.isEmpty() || isSameDisplay(theirs, ours)) {
        return std::nullopt;
    }
    return CommandResult::failure(
        InstanceBus::tr("Glimmerpane is already running on display %1.").arg(theirs));
}

/** Between launches of the same version, so not for other programs. */
ServedInterface commandInterface(InstanceBus::Handler handler)
{
    const auto argument = [](const char *signature, const char *name) {
        return ServedArgument{.signature = QLatin1String(signature), .name = QLatin1String(name)};
    };
    auto command
        = [handler = std::move(handler)](const QVariantList &taken, const CallReply &reply) {
              handler({.arguments = taken[0].toStringList(), .startupId = taken[1].toString()},
                      [reply](const CommandResult &result) {
                          reply(QVariantList{int(result.exitCode), result.output, result.error});
                      });
          };
    const auto display
        = [](const QVariantList &, const CallReply &reply) { reply(QVariantList{displayName()}); };
    return {.name = name(),
            .methods = {{.name = QStringLiteral("Command"),
                         .takes = {argument("as", "arguments"), argument("s", "startup_id")},
                         .gives = {argument("i", "exit_code"), argument("s", "output"),
                                   argument("s", "error")},
                         .call = std::move(command)},
                        {.name = QStringLiteral("Display"),
                         .takes = {},
                         .gives = {argument("s", "name")},
                         .call = display}},
            .properties = {}};
}

bool isNobodyThere(const QDBusMessage &reply)
{
    return reply.errorName() == u"org.freedesktop.DBus.Error.ServiceUnknown"
        || reply.errorName() == u"org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

std::optional<CommandResult> handOver(const CommandLine &command)
{
    if (!isSessionBusThere()) {
        return std::nullopt;
    }
    // Uses a separate connection because the shared one is tied to the application object, which
    // does not exist yet.
    const QString connectionName = QStringLiteral("handOver");
    const auto disconnect
        = qScopeGuard([&] { QDBusConnection::disconnectFromBus(connectionName); });
    const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    if (!bus.isConnected()) {
        return std::nullopt;
    }
    const QDBusMessage display = call(bus, QStringLiteral("Display"), {}, quickAnswer);
    if (isNobodyThere(display)) {
        return std::nullopt;
    }
    if (auto failure = objection(display)) {
        return failure;
    }
    const QDBusMessage reply
        = call(bus, QStringLiteral("Command"), {command.arguments, command.startupId}, longestWait);
    if (isNobodyThere(reply)) {
        return std::nullopt;
    }
    return resultOf(reply);
}

InstanceBus::InstanceBus(Handler handler)
    : object_(path())
{
    object_.add(commandInterface(std::move(handler)));
}

bool InstanceBus::claimName()
{
    if (!isSessionBusThere()) {
        return true;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return true;
    }
    // Register the object first: clients may call as soon as they see the name.
    object_.showOn(bus);
    const auto answer = bus.interface()->registerService(name());
    return !answer.isValid() || answer.value() == QDBusConnectionInterface::ServiceRegistered;
}

} // namespace glimmerpane
