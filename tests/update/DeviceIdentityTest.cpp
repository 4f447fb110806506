// SPDX-License-Identifier: MIT
#include "update/DeviceIdentity.h"

#include <QCoreApplication>
#include <QTest>

using namespace glimmerpane;

using Serial = std::optional<QString>;

class DeviceIdentityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serial_comesOnlyFromAMachineId_data();
    void serial_comesOnlyFromAMachineId();
    void serial_isShownAsNotAvailable_whenThereIsNone();
    void version_isNotAvailable_whenTheBuildHasNone();
};

void DeviceIdentityTest::serial_comesOnlyFromAMachineId_data()
{
    QTest::addColumn<QByteArray>("machineId");
    QTest::addColumn<Serial>("expected");
    const auto row = [](const char *name, const QByteArray &id, Serial expected = std::nullopt) {
        QTest::newRow(name) << id << expected;
    };
    // The start of: openssl mac -digest SHA256 -macopt "key:glimmerpane device identity" HMAC,
    // of the 16 bytes that the digits stand for.
    row("an id", "0123456789abcdef0123456789abcdef", QStringLiteral("05cf920ec3d8d077"));
    row("another", "fedcba9876543210fedcba9876543210", QStringLiteral("9fe9b480414e1088"));

    row("empty", "");
    row("a digit less", "0123456789abcdef0123456789abcde");
    row("a digit more", "0123456789abcdef0123456789abcdef0");
    row("a line", "0123456789abcdef0123456789abcdef\n");
    row("dashes", "01234567-89ab-cdef-0123-456789abcdef");
    row("being set up", "uninitialized");
    row("one wrong digit", "0123456789abcdef0123456789abcdeg");
    row("two wrong digits", "0123456789abcdef0123456789abcdg-");
    row("white space inside", "0123456789abcdef 123456789abcdef");
    row("no digits", QByteArray(32, 'z'));
}

void DeviceIdentityTest::serial_comesOnlyFromAMachineId()
{
    QFETCH(QByteArray, machineId);
    QFETCH(Serial, expected);
    QCOMPARE(deviceSerialNumber(machineId), expected);
}

void DeviceIdentityTest::serial_isShownAsNotAvailable_whenThereIsNone()
{
    QCOMPARE(deviceSerialNumber(), deviceSerialNumber(QSysInfo::machineUniqueId()));
    QCOMPARE(displayDeviceSerial(), deviceSerialNumber().value_or(QStringLiteral("N/A")));
}

void DeviceIdentityTest::version_isNotAvailable_whenTheBuildHasNone()
{
    QCOMPARE(appVersion(), QStringLiteral("N/A"));
    QCoreApplication::setApplicationVersion(QStringLiteral(" 1.4.2"));
    QCOMPARE(appVersion(), QStringLiteral(" 1.4.2"));
}

QTEST_GUILESS_MAIN(DeviceIdentityTest)
#include "DeviceIdentityTest.moc"
