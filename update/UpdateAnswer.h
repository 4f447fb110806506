// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <QByteArray>

namespace glimmerpane
{

/** What the update service is told, as JSON: these two texts and nothing else. */
QByteArray updateQuestion(const QString &serialNumber, const QString &appVersion);

/**
 * Reads the service's answer. Of a member that is there twice the last one counts; members of other
 * names are passed over.
 */
UpdateRepositoryProtocol::CheckResult updateInfoFromJson(const QByteArray &json);

} // namespace glimmerpane
