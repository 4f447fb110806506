// SPDX-License-Identifier: MIT
#pragma once

#include "services/Identity.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace glimmerpane
{

/** The version of this build, or "N/A". */
QString appVersion();

/** A text that identifies this machine to this program only; null if the machine has no id. */
std::optional<QString> deviceSerialNumber();

/** Both. */
Identity deviceIdentity();

/**
 * The first 16 hexadecimal digits of an application-specific hash of a machine id, which must
 * consist of 32 hexadecimal digits. machine-id(5) asks programs never to show or send the id
 * itself.
 */
std::optional<QString> deviceSerialNumber(const QByteArray &machineId);

} // namespace glimmerpane
