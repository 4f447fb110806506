// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <QByteArray>

namespace glimmerpane
{

/** The request to the update service as JSON: these two texts and nothing else. */
QByteArray updateQuestion(const QString &serialNumber, const QString &appVersion);

/**
 * Parses the service's answer. If a member occurs twice, the last one counts; unknown members are
 * ignored.
 */
UpdateRepositoryProtocol::CheckResult updateInfoFromJson(const QByteArray &json);

} // namespace glimmerpane
