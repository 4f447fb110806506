// SPDX-License-Identifier: MIT
#include "platform/pipewire/LogicalRegion.h"

#include <QTest>

using namespace glimmerpane;

class LogicalRegionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void region_hasTheArea_data()
    {
        QTest::addColumn<QRect>("area"); // pixels
        QTest::addColumn<QRect>("pixels"); // all displays'
        QTest::addColumn<QRect>("logical");
        QTest::addColumn<QRect>("region"); // asked for
        QTest::addColumn<QSize>("picture"); // what comes
        QTest::addColumn<QRect>("part"); // of the picture
        const QRect screen(0, 0, 1280, 720);
        QTest::addRow("same") << QRect(10, 20, 300, 200) << screen << screen
                              << QRect(10, 20, 300, 200) << QSize(300, 200)
                              << QRect(0, 0, 300, 200);
        QTest::addRow("twice") << QRect(11, 20, 301, 200) << QRect(0, 0, 2560, 1440) << screen
                               << QRect(5, 10, 151, 100) << QSize(302, 200)
                               << QRect(1, 0, 301, 200);
        QTest::addRow("one and a half")
            << QRect(10, 15, 300, 201) << QRect(0, 0, 1920, 1080) << screen
            << QRect(6, 10, 201, 134) << QSize(302, 201) << QRect(1, 0, 300, 201);
        QTest::addRow("enlarged picture")
            << QRect(10, 20, 300, 200) << screen << screen << QRect(10, 20, 300, 200)
            << QSize(600, 400) << QRect(0, 0, 600, 400);
        QTest::addRow("other origin")
            << QRect(10, 20, 300, 200) << screen << screen.translated(100, 50)
            << QRect(110, 70, 300, 200) << QSize(300, 200) << QRect(0, 0, 300, 200);
        QTest::addRow("nothing known")
            << QRect(10, 20, 300, 200) << QRect() << QRect() << QRect(10, 20, 300, 200)
            << QSize(300, 200) << QRect(0, 0, 300, 200);
    }
    void region_hasTheArea()
    {
        QFETCH(const QRect, area);
        QFETCH(const QRect, pixels);
        QFETCH(const QRect, logical);
        QFETCH(const QSize, picture);
        const auto asked = pipewire::regionOf(area, pixels, logical);
        QTEST(asked.logical, "region");
        QTEST(asked.part(picture), "part");
    }
};

QTEST_APPLESS_MAIN(LogicalRegionTest)
#include "LogicalRegionTest.moc"
