// SPDX-License-Identifier: MIT
#pragma once

#include "app/CommandResult.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

namespace glimmerpane
{

/** A command line on its way from one launch of the program to another. */
struct CommandLine {
    QStringList arguments; ///< without the program name
    QString startupId; ///< from the startup notification protocol; empty if none
};

/**
 * Sends the command to the instance running in this session and waits for the result. Null if no
 * instance is running or there is no session bus. Needs no application object.
 */
std::optional<CommandResult> handOver(const CommandLine &command);

/**
 * Makes this program the only instance in its session by owning a name on the session bus. Main
 * thread.
 */
class InstanceBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.github.glimmerpane.Glimmerpane")

public:
    using Reply = std::function<void(const CommandResult &)>;
    using Handler = std::function<void(const CommandLine &, Reply)>;

    /** The handler replies to each command exactly once, immediately or later. */
    explicit InstanceBus(Handler handler);

    /** False if another program owns the name. True without a bus. */
    bool claimName();

public Q_SLOTS:
    /** D-Bus method. Its results are sent when the handler replies. */
    // NOLINTNEXTLINE(readability-identifier-naming): methods of D-Bus begin with a capital letter
    int Command(const QStringList &arguments, const QString &startupId, QString &output,
                QString &error);

    /** D-Bus method. Names the display of this program's windows. */
    // NOLINTNEXTLINE(readability-identifier-naming)
    QString Display() const;

private:
    const Handler handler_;
};

} // namespace glimmerpane
