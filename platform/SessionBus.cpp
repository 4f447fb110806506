// SPDX-License-Identifier: MIT
#include "platform/SessionBus.h"

#include <QFile>
#include <QString>

namespace glimmerpane
{

bool isSessionBusThere()
{
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")
        || (!runtimeFolder.isEmpty() && QFile::exists(runtimeFolder + QStringLiteral("/bus")));
}

} // namespace glimmerpane
