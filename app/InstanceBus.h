// SPDX-License-Identifier: MIT
#pragma once

#include "app/CommandResult.h"
#include "platform/bus/ServedObject.h"

#include <QCoreApplication>
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
 * Makes this program the only instance in its session by owning a name on the session bus, with one
 * object that takes commands from other launches. Main thread.
 */
class InstanceBus
{
    Q_DECLARE_TR_FUNCTIONS(glimmerpane::InstanceBus)

public:
    using Reply = std::function<void(const CommandResult &)>;
    using Handler = std::function<void(const CommandLine &, Reply)>;

    /** The handler replies to each command exactly once, immediately or later. */
    explicit InstanceBus(Handler handler);

    /** What others see; more interfaces can be added before the name is claimed. */
    ServedObject &object() { return object_; }

    /** False if another program owns the name. True without a bus. */
    bool claimName();

private:
    ServedObject object_;
};

} // namespace glimmerpane
