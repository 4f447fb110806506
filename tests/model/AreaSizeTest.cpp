// SPDX-License-Identifier: MIT
#include "model/AreaSize.h"

#include "tests/support/Fakes.h"

#include <QTest>

using namespace glimmerpane;

class AreaSizeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_isTwoPositiveNumbers()
    {
        for (const auto &[text, width, height, isRatio] :
             {std::tuple("1280x720", 1280., 720., false),
              {"16:9", 16., 9., true},
              {"2.39:1", 2.39, 1., true}}) {
            QVERIFY2(areaSizeFromText(QString::fromLatin1(text))
                         == (AreaSize{.width = width, .height = height, .isRatio = isRatio}),
                     text);
        }
        for (const char *text : {"", "x", "0x1", "1x0", "0:9", "16:0.0", "-1x2", "1.5x2", "1x2x3",
                                 "1X2", " 1x2", "1x2\n", "1e3x2", "1234567x1", "16:9:1", "16/9"}) {
            QVERIFY2(!areaSizeFromText(QString::fromLatin1(text)), text);
        }
    }

    /** Display pixels: one 1920x1080 at the left, one 1280x1024 at its right and 56 lower. */
    void area_getsExactlyThesePixels_atEveryScaleFactor()
    {
        struct Row {
            QRect area;
            const char *size;
            QRect expected; ///< null: refused
        };
        const Row rows[]{
            {{100, 100, 600, 400}, "1280x720", {0, 0, 1280, 720}}, // moved in from the top left
            {{700, 400, 501, 301}, "300x201", {800, 450, 300, 201}},
            {{1700, 900, 200, 150}, "1919x1080", {1, 0, 1919, 1080}},
            {{1910, 500, 100, 100}, "200x200", {1920, 450, 200, 200}}, // its centre is on the other
            {{2100, 1070, 0, 0}, "100x100", {2050, 980, 100, 100}},
            {{100, 100, 600, 400}, "1921x1080", {}},
            {{2000, 100, 600, 400}, "1280x1025", {}},
            {{1850, -250, 100, 300}, "10x10", {1895, 0, 10, 10}}, // its centre is on none
            {{5000, 100, 600, 400}, "10x10", {}},
            {{100, 200, 640, 400}, "16:9", {100, 220, 640, 360}}, // keeps its width
            {{100, 100, 1600, 900}, "4:3", {300, 100, 1200, 900}}, // as wide it would be too high
            {{100, 200, 500, 500}, "9:16", {100, 6, 500, 889}},
            {{0, 0, 1920, 1080}, "1:100000", {}},
            {{100, 100, 0, 400}, "16:9", {}},
        };
        for (const double scale : {1.0, 1.25, 1.5, 2.0, 1.3333}) {
            FakeDesktop desktop;
            desktop.scale = scale;
            desktop.all = {{.name = {}, .pixels = {0, 0, 1920, 1080}},
                           {.name = {}, .pixels = {1920, 56, 1280, 1024}}};
            const MainDisplay main = *desktop.mainDisplay();
            for (const auto &[area, size, expected] : rows) {
                const Rect before = main.areaOf(area);
                const auto after = sized({before.x, before.y, -before.width, before.height},
                                         *areaSizeFromText(QString::fromLatin1(size)), desktop);
                QCOMPARE(after.has_value(), expected.isValid());
                if (after) {
                    QCOMPARE(main.areaPixels({after->x, after->y, after->width, after->height}),
                             expected);
                } else {
                    QVERIFY(!after.error().text.isEmpty());
                }
            }
        }
        FakeDesktop none;
        none.all.clear();
        QVERIFY(!sized({0, 0, 10, 10}, {.width = 5, .height = 5}, none));
    }
};

QTEST_APPLESS_MAIN(AreaSizeTest)
#include "AreaSizeTest.moc"
