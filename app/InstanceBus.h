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
    QStringList arguments; ///< after the program's name
    QString startupId; ///< of the startup notification protocol; empty where nobody shows a start
};

/**
 * Has the program that runs in this session do what the command says, and waits for it. Nothing
 * where none runs, or where there is no session bus. Needs no application object.
 */
std::optional<CommandResult> handOver(const CommandLine &command);

/** What makes a program the one of its session: a name on the session bus. Main thread. */
class InstanceBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.github.glimmerpane.Glimmerpane")

public:
    using Reply = std::function<void(const CommandResult &)>;
    using Handler = std::function<void(const CommandLine &, Reply)>;

    /** The handler replies to each command once, at once or later. */
    explicit InstanceBus(Handler handler);

    /** False if another program has the name. True without a bus: nobody can be there. */
    bool claimName();

public Q_SLOTS:
    /** The method on the bus; its results are sent when the handler replies. */
    // NOLINTNEXTLINE(readability-identifier-naming): methods of D-Bus begin with a capital letter
    int Command(const QStringList &arguments, const QString &startupId, QString &output,
                QString &error);

    /** A method, too: the value of DISPLAY where the program shows itself. */
    // NOLINTNEXTLINE(readability-identifier-naming)
    QString Display() const { return qEnvironmentVariable("DISPLAY"); }

private:
    const Handler handler_;
};

} // namespace glimmerpane
