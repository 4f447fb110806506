// SPDX-License-Identifier: MIT
#include "platform/Geometry.h"

#include <QTest>

#include <vector>

using namespace glimmerpane;

class GeometryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flipped_countsFromTheOtherEdge()
    {
        QCOMPARE(flipped({10, 20.5, 300, 200.25}, 900), (Rect{10, 679.25, 300, 200.25}));
        QCOMPARE(flipped({10, 920, -30, -40}, 900), (Rect{10, 20, -30, -40}));
    }

    void desktopPixels_areRoundedAndInRange()
    {
        using Row = std::tuple<Rect, QPoint, double, QRect>;
        for (const auto &[points, origin, scale, expected] :
             {Row({10, 20, 300, 200}, {1920, -1080}, 1, {1930, -1060, 300, 200}),
              Row({10.25, 20.5, 300.5, 0.25}, {1920, 0}, 2, {1941, 41, 601, 1}),
              Row({0.4375, 0.4375, 100.5, 33.25}, {7, 9}, 1.5, {8, 10, 151, 50}),
              Row({-0.5, 0.5, -1.5, 2.5}, {}, 1, {-1, 1, -2, 3}),
              Row({0, 0, 1e300, -1e300}, {}, 1, {0, 0, 2147483647, -2147483647}),
              Row({32000, 0, 10, 10}, {1920, 0}, 1, {32767, 0, 10, 10}),
              Row({qInf(), -qInf(), qInf(), qQNaN()}, {}, 1, {32767, -32768, 0, 0}),
              Row({qQNaN(), qQNaN(), -qInf(), 5}, {}, 1, {0, 0, 0, 5})}) {
            QCOMPARE(toDesktopPixels(points, origin, scale), expected);
        }
        for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            const QPoint origin(1920, -1080);
            const QRect pixels(1907, 33, 641, 479);
            QCOMPARE(toDesktopPixels(toDisplayPoints(pixels, origin, scale), origin, scale),
                     pixels);
        }
    }

    void aspectFit_isCentred()
    {
        using Row = std::tuple<QSize, QRect, QRect>;
        for (const auto &[picture, bounds, expected] :
             {Row({30, 20}, {5, 7, 300, 200}, {5, 7, 300, 200}),
              Row({400, 100}, {0, 0, 200, 200}, {0, 75, 200, 50}),
              Row({100, 400}, {10, 20, 200, 200}, {85, 20, 50, 200}),
              Row({100, 100}, {0, 0, 201, 100}, {50, 0, 100, 100}),
              Row({10000, 1}, {0, 0, 100, 100}, {0, 49, 100, 1}),
              Row({1, 10000}, {0, 0, 100, 100}, {49, 0, 1, 100})}) {
            QCOMPARE(aspectFit(picture, bounds), expected);
        }
    }

    void onePixelPlace_showsOnePixelFarFromTheArea()
    {
        using Displays = std::vector<QRect>;
        using Row = std::tuple<QRect, Displays, QPoint>;
        const QRect main(0, 0, 1000, 800);
        const QRect right(1000, 0, 600, 500);
        for (const auto &[area, displays, expected] :
             {Row({10, 10, 300, 200}, {main}, {999, 799}),
              Row({600, 500, 300, 200}, {main}, {-299, -199}),
              Row({0, 0, 1000, 800}, {main}, {999, 799}), // nothing is outside it
              // The inner corners have a neighbour, which would show more of the window.
              Row({10, 10, 300, 200}, {main, right}, {1599, 499}),
              Row({1100, 10, 300, 200}, {main, right}, {-299, 799}),
              Row({1100, 10, 300, 200}, {main, right, {0, 800, 1600, 500}}, {-299, 1299}),
              Row({-900, -700, 300, 200}, {{-1000, -800, 1000, 800}}, {-1, -1}),
              Row({0, 0, 300, 200}, {}, {-300, -200})}) {
            QCOMPARE(onePixelPlace(area, displays), expected);
        }
    }
};

QTEST_APPLESS_MAIN(GeometryTest)
#include "GeometryTest.moc"
