// SPDX-License-Identifier: MIT
#include "update/DeviceIdentity.h"

#include <QCoreApplication>
#include <QMessageAuthenticationCode>
#include <QSysInfo>

namespace glimmerpane
{

namespace
{

const QString unknown = QStringLiteral("N/A");
constexpr int serialDigits = 16;
constexpr int machineIdDigits = 32;

} // namespace

QString appVersion()
{
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? unknown : version;
}

std::optional<QString> deviceSerialNumber()
{
    return deviceSerialNumber(QSysInfo::machineUniqueId());
}

Identity deviceIdentity()
{
    return {.appVersion = appVersion(), .serialNumber = deviceSerialNumber()};
}

std::optional<QString> deviceSerialNumber(const QByteArray &machineId)
{
    const QByteArray id = QByteArray::fromHex(machineId);
    // fromHex() skips anything that is not a digit.
    if (machineId.size() != machineIdDigits || id.toHex() != machineId.toLower()) {
        return std::nullopt;
    }
    const QByteArray hash = QMessageAuthenticationCode::hash(
        id, QByteArrayLiteral("glimmerpane device identity"), QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex().first(serialDigits));
}

} // namespace glimmerpane
