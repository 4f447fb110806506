// SPDX-License-Identifier: MIT
#include "update/DeviceIdentity.h"

#include <QCoreApplication>
#include <QTest>

using namespace glimmerpane;

class DeviceIdentityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serial_comesOnlyFromAMachineId()
    {
        // The start of: openssl mac -digest SHA256 -macopt "key:glimmerpane device identity" HMAC,
        // of the 16 bytes that the digits stand for.
        QCOMPARE(deviceSerialNumber("0123456789abcdef0123456789abcdef"),
                 QStringLiteral("05cf920ec3d8d077"));
        QCOMPARE(deviceSerialNumber("fedcba9876543210fedcba9876543210"),
                 QStringLiteral("9fe9b480414e1088"));
        for (const char *id :
             {"", "0123456789abcdef0123456789abcde", "0123456789abcdef0123456789abcdef0",
              "0123456789abcdef0123456789abcdef\n", "01234567-89ab-cdef-0123-456789abcdef",
              "uninitialized", "0123456789abcdef0123456789abcdeg",
              "0123456789abcdef0123456789abcdg-", "0123456789abcdef 123456789abcdef"}) {
            QVERIFY2(!deviceSerialNumber(id), id);
        }
        QCOMPARE(deviceSerialNumber(), deviceSerialNumber(QSysInfo::machineUniqueId()));
        QCOMPARE(deviceIdentity().serialNumber, deviceSerialNumber());
    }

    void version_isNotAvailable_whenTheBuildHasNone()
    {
        QCOMPARE(appVersion(), QStringLiteral("N/A"));
        QCoreApplication::setApplicationVersion(QStringLiteral(" 1.4.2"));
        QCOMPARE(appVersion(), QStringLiteral(" 1.4.2"));
    }
};

QTEST_GUILESS_MAIN(DeviceIdentityTest)
#include "DeviceIdentityTest.moc"
