// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/WaitFor.h"

namespace glimmerpane::testing
{

/** A private D-Bus session bus. Ends with the object. */
class SessionBus
{
public:
    /** Returns once the bus accepts clients. */
    static Result<SessionBus> start(const QProcessEnvironment &environment
                                    = QProcessEnvironment::systemEnvironment())
    {
        SessionBus bus;
        auto process = ChildProcess::start(
            {.program = QStringLiteral("dbus-daemon"),
             .arguments = {QStringLiteral("--session"), QStringLiteral("--nofork"),
                           QStringLiteral("--print-address")},
             .environment = environment});
        if (!process) {
            return failure(process.error());
        }
        bus.process_ = std::move(*process);
        const auto said = [&] { return bus.process_.output(); };
        if (!waitFor([&] { return bus.address().contains(QStringLiteral(",guid=")); },
                     std::chrono::seconds(20))) {
            return failure(QStringLiteral("dbus-daemon did not start: ")
                           + QString::fromLocal8Bit(said()));
        }
        return bus;
    }

    /** For DBUS_SESSION_BUS_ADDRESS. */
    QString address() const
    {
        const QByteArray said = process_.output(); // perhaps with warnings around it
        const auto begin = said.indexOf("unix:");
        return QString::fromLatin1(said.mid(begin, said.indexOf('\n', begin) - begin));
    }

private:
    ChildProcess process_;
};

} // namespace glimmerpane::testing
