// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace glimmerpane
{

/** Which build this is, and on which machine. */
struct Identity {
    QString appVersion; ///< "N/A" where it is not known
    std::optional<QString> serialNumber;

    QString displayDeviceSerial() const { return serialNumber.value_or(QStringLiteral("N/A")); }
};

} // namespace glimmerpane
