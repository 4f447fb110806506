// SPDX-License-Identifier: MIT
#include "selection/ResizeHandler.h"
#include "selection/BorderView.h"
#include "selection/ButtonContainerView.h"

#include <QTest>

using namespace glimmerpane;
using Edge = ResizeHandler::ResizeEdge;

Q_DECLARE_METATYPE(Edge)
Q_DECLARE_METATYPE(Rect)

class ResizeHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void edgeAt_namesTheNearestSides()
    {
        struct Row {
            QSizeF size;
            QPointF point;
            Edge edge;
        };
        const QSizeF usual(600, 400);
        for (const auto &[size, point, edge] :
             {Row{usual, {15, 385}, Edge::topLeft}, Row{usual, {585, 385}, Edge::topRight},
              Row{usual, {15, 15}, Edge::bottomLeft}, Row{usual, {585, 15}, Edge::bottomRight},
              Row{usual, {300, 385}, Edge::top}, Row{usual, {300, 15}, Edge::bottom},
              Row{usual, {15, 200}, Edge::left}, Row{usual, {585, 200}, Edge::right},
              Row{usual, {16, 200}, Edge::none}, Row{usual, {584.999, 200}, Edge::none},
              Row{usual, {-5, 200}, Edge::left}, Row{usual, {700, -9}, Edge::bottomRight},
              Row{{20, 25}, {10, 12}, Edge::topLeft}, Row{{600, 20}, {300, 10}, Edge::top},
              Row{{20, 400}, {10, 200}, Edge::left}}) {
            const Rect bounds{.x = 70, .y = -70, .width = size.width(), .height = size.height()};
            QCOMPARE(ResizeHandler().edgeAt(point, bounds), edge);
        }
    }

    void resizedFrame_followsThePointerWithinItsLimits_data()
    {
        QTest::addColumn<Edge>("edge");
        QTest::addColumn<QPointF>("pointer");
        QTest::addColumn<Rect>("initial");
        QTest::addColumn<Rect>("screen");
        QTest::addColumn<Rect>("expected");
        const Rect screen{0, 0, 1920, 1080};
        const Rect initial{100, 100, 600, 400};
        const auto row = [&](const char *name, Edge edge, QPointF pointer, const Rect &expected) {
            QTest::newRow(name) << edge << pointer << initial << screen << expected;
        };
        row("none", Edge::none, {5, 5}, initial);
        row("top", Edge::top, {5, 620}, {100, 100, 600, 520});
        row("bottom", Edge::bottom, {5, 80}, {100, 80, 600, 420});
        row("left", Edge::left, {150.5, 5}, {150.5, 100, 549.5, 400});
        row("right", Edge::right, {900.25, 5}, {100, 100, 800.25, 400});
        row("top left", Edge::topLeft, {50, 550}, {50, 100, 650, 450});
        row("top right", Edge::topRight, {750, 550}, {100, 100, 650, 450});
        row("bottom left", Edge::bottomLeft, {50, 50}, {50, 50, 650, 450});
        row("bottom right", Edge::bottomRight, {750, 50}, {100, 50, 650, 450});
        row("smallest width", Edge::right, {150, 0}, {100, 100, 200, 400});
        row("smallest width, left", Edge::left, {690, 0}, {500, 100, 200, 400});
        row("smallest height", Edge::top, {0, -50}, {100, 100, 600, 150});
        row("screen's right side", Edge::right, {2000, 0}, {100, 100, 1820, 400});
        row("screen's corner", Edge::bottomLeft, {-9, -9}, {0, 0, 700, 500});

        QTest::newRow("the screen wins over the smallest width")
            << Edge::left << QPointF(50, 0) << Rect{-80, 0, 200, 300} << screen
            << Rect{0, 0, 120, 300};
        QTest::newRow("a screen smaller than the smallest size")
            << Edge::topRight << QPointF(90, 90) << Rect{10, 10, 50, 50} << Rect{0, 0, 160, 120}
            << Rect{10, 10, 150, 110};
        QTest::newRow("a screen left of and below the origin")
            << Edge::bottomLeft << QPointF(-5000, -5000) << Rect{-1000, -600, 400, 300}
            << Rect{-1280, -900, 1280, 900} << Rect{-1280, -900, 680, 600};
        QTest::newRow("the other sides may lie beyond the screen")
            << Edge::right << QPointF(500, 0) << Rect{-40, -30, 300, 200} << screen
            << Rect{-40, -30, 540, 200};
    }
    void resizedFrame_followsThePointerWithinItsLimits()
    {
        QFETCH(Edge, edge);
        QFETCH(QPointF, pointer);
        QFETCH(Rect, initial);
        QFETCH(Rect, screen);
        QTEST(ResizeHandler().resizedFrame(edge, pointer, initial, screen), "expected");
    }

    void handlesAndPanel_followTheSize()
    {
        BorderView border;
        border.layout({2000, 90});
        border.layout({600, 400});
        const std::array<Rect, 8> handles{{{0, 0, 20, 20},
                                           {580, 0, 20, 20},
                                           {0, 380, 20, 20},
                                           {580, 380, 20, 20},
                                           {270, 0, 60, 8},
                                           {270, 392, 60, 8},
                                           {0, 170, 8, 60},
                                           {592, 170, 8, 60}}};
        QVERIFY(border.handles() == handles);
        QCOMPARE(ButtonContainerView::frameIn({600, 400}), (Rect{240, 170, 120, 60}));
        // In pixels, from the top: no gap and no overhang at a side, whatever the scale.
        const auto marks = border.marks({900, 600}, 1.5);
        QCOMPARE(marks.size(), std::size_t(12));
        QCOMPARE(marks[1], QRect(0, 0, 900, 3));
        QCOMPARE(marks[4 + 1], QRect(870, 570, 30, 30));
        QCOMPARE(marks[4 + 5], QRect(405, 0, 90, 12));
    }
};

QTEST_APPLESS_MAIN(ResizeHandlerTest)
#include "ResizeHandlerTest.moc"
