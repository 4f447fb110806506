// SPDX-License-Identifier: MIT
#include "platform/Geometry.h"

#include <QTest>

#include <limits>

using namespace glimmerpane;

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

class GeometryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flipped_countsFromTheOtherEdge_data();
    void flipped_countsFromTheOtherEdge();
    void rootPixels_areRoundedAndInRange_data();
    void rootPixels_areRoundedAndInRange();
    void displayPoints_areTheWayBack();
    void size_isTheSame_whereverItLies();
    void aspectFit_isCentred_data();
    void aspectFit_isCentred();
};

void GeometryTest::flipped_countsFromTheOtherEdge_data()
{
    QTest::addColumn<Rect>("rect");
    QTest::addColumn<Rect>("expected");
    QTest::newRow("whole display") << Rect{0, 0, 1440, 900} << Rect{0, 0, 1440, 900};
    QTest::newRow("at an edge") << Rect{10, 0, 300, 200} << Rect{10, 700, 300, 200};
    QTest::newRow("inside") << Rect{10, 20.5, 300, 200.25} << Rect{10, 679.25, 300, 200.25};
    QTest::newRow("display above") << Rect{0, 900, 800, 600} << Rect{0, -600, 800, 600};
    QTest::newRow("display below") << Rect{-5, -600, 800, 600} << Rect{-5, 900, 800, 600};
    QTest::newRow("negative size") << Rect{10, 20, -30, -40} << Rect{10, 920, -30, -40};
}

void GeometryTest::flipped_countsFromTheOtherEdge()
{
    QFETCH(Rect, rect);
    QFETCH(Rect, expected);
    QCOMPARE(flipped(rect, 900), expected);
    QCOMPARE(flipped(expected, 900), rect);
}

void GeometryTest::rootPixels_areRoundedAndInRange_data()
{
    QTest::addColumn<Rect>("points");
    QTest::addColumn<QPoint>("origin");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRect>("expected");
    const auto row
        = [](const char *name, Rect points, QPoint origin, double scale, QRect expected) {
              QTest::newRow(name) << points << origin << scale << expected;
          };
    row("whole", {10, 20, 300, 200}, {}, 1, {10, 20, 300, 200});
    row("display elsewhere", {10, 20, 300, 200}, {1920, -1080}, 1, {1930, -1060, 300, 200});
    row("scale 2", {10.25, 20.5, 300.5, 0.25}, {1920, 0}, 2, {1941, 41, 601, 1});
    row("scale 1.5", {1, 3, 5, 7}, {100, 0}, 1.5, {102, 5, 8, 11});
    row("fractions", {0.4, 0.6, 10.4, 10.6}, {}, 1, {0, 1, 10, 11});
    row("halves, away from zero", {-0.5, 0.5, 1.5, 2.5}, {}, 1, {-1, 1, 2, 3});
    row("negative size", {0, 0, -300.6, -200.4}, {}, 1, {0, 0, -301, -200});
    row("too far", {1e9, -1e9, 10, 10}, {}, 1, {32767, -32768, 10, 10});
    row("too far with the display", {32000, 0, 10, 10}, {1920, 0}, 1, {32767, 0, 10, 10});
    row("not finite", {infinity, -infinity, infinity, noNumber}, {}, 1, {32767, -32768, 0, 0});
    row("no numbers", {noNumber, noNumber, -infinity, 5}, {}, 1, {0, 0, 0, 5});
    row("too large", {0, 0, 1e300, -1e300}, {}, 1, {QPoint(), QSize(2147483647, -2147483647)});
}

void GeometryTest::rootPixels_areRoundedAndInRange()
{
    QFETCH(Rect, points);
    QFETCH(QPoint, origin);
    QFETCH(double, scale);
    QFETCH(QRect, expected);
    const QRect pixels = toRootPixels(points, origin, scale);
    QCOMPARE(pixels.topLeft(), expected.topLeft());
    QCOMPARE(pixels.size(), expected.size());
    QCOMPARE(toPixels(points.width, points.height, scale), expected.size());
}

void GeometryTest::displayPoints_areTheWayBack()
{
    const QPoint origin(1920, -1080);
    QCOMPARE(toDisplayPoints({1930, -1060, 301, 200}, origin, 2), (Rect{5, 10, 150.5, 100}));
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QRect pixels(1907, 33, 641, 479);
        QCOMPARE(toRootPixels(toDisplayPoints(pixels, origin, scale), origin, scale), pixels);
    }
}

void GeometryTest::size_isTheSame_whereverItLies()
{
    for (double x = -2; x < 2; x += 0.0625) {
        QCOMPARE(toRootPixels({x, x, 100.5, 33.25}, {7, 9}, 1.5).size(), QSize(151, 50));
    }
}

void GeometryTest::aspectFit_isCentred_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QRect>("expected");
    const auto row = [](const char *name, QSize picture, QRect bounds, QRect expected) {
        QTest::newRow(name) << picture << bounds << expected;
    };
    row("exact", {300, 200}, {0, 0, 300, 200}, {0, 0, 300, 200});
    row("exact, odd", {1367, 769}, {0, 0, 1367, 769}, {0, 0, 1367, 769});
    row("same shape", {600, 400}, {0, 0, 300, 200}, {0, 0, 300, 200});
    row("enlarged", {30, 20}, {5, 7, 300, 200}, {5, 7, 300, 200});
    row("wide", {400, 100}, {0, 0, 200, 200}, {0, 75, 200, 50});
    row("tall", {100, 400}, {10, 20, 200, 200}, {85, 20, 50, 200});
    row("odd rest", {100, 100}, {0, 0, 201, 100}, {50, 0, 100, 100});
    row("one pixel", {1, 1}, {0, 0, 300, 200}, {50, 0, 200, 200});
    row("into one pixel", {300, 300}, {3, 4, 1, 1}, {3, 4, 1, 1});
    row("flat line", {10000, 1}, {0, 0, 100, 100}, {0, 49, 100, 1});
    row("upright line", {1, 10000}, {0, 0, 100, 100}, {49, 0, 1, 100});
}

void GeometryTest::aspectFit_isCentred()
{
    QFETCH(QSize, picture);
    QFETCH(QRect, bounds);
    QFETCH(QRect, expected);
    QCOMPARE(aspectFit(picture, bounds), expected);
}

QTEST_APPLESS_MAIN(GeometryTest)
#include "GeometryTest.moc"
