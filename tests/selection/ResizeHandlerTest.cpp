// SPDX-License-Identifier: MIT
#include "selection/ResizeHandler.h"
#include "selection/BorderView.h"
#include "selection/ButtonContainerView.h"

#include <QTest>

using namespace glimmerpane;
using Edge = ResizeHandler::ResizeEdge;

class ResizeHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void edgeAt_namesTheNearestSides()
    {
        struct Row {
            QSizeF size;
            Point point;
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

    void resizedFrame_followsThePointerWithinItsLimits()
    {
        struct Row {
            Edge edge;
            Point pointer;
            Rect expected;
            Rect initial{100, 100, 600, 400};
            Rect screen{0, 0, 1920, 1080};
        };
        for (const auto &[edge, pointer, expected, initial, screen] :
             {Row{Edge::none, {5, 5}, {100, 100, 600, 400}},
              Row{Edge::top, {5, 620}, {100, 100, 600, 520}},
              Row{Edge::bottom, {5, 80}, {100, 80, 600, 420}},
              Row{Edge::left, {150.5, 5}, {150.5, 100, 549.5, 400}},
              Row{Edge::right, {900.25, 5}, {100, 100, 800.25, 400}},
              Row{Edge::topLeft, {50, 550}, {50, 100, 650, 450}},
              Row{Edge::topRight, {750, 550}, {100, 100, 650, 450}},
              Row{Edge::bottomLeft, {50, 50}, {50, 50, 650, 450}},
              Row{Edge::bottomRight, {750, 50}, {100, 50, 650, 450}},
              Row{Edge::right, {150, 0}, {100, 100, 200, 400}}, // not narrower
              Row{Edge::left, {690, 0}, {500, 100, 200, 400}},
              Row{Edge::top, {0, -50}, {100, 100, 600, 150}}, // not lower
              Row{Edge::right, {2000, 0}, {100, 100, 1820, 400}}, // not beyond the screen
              Row{Edge::bottomLeft, {-9, -9}, {0, 0, 700, 500}},
              // The screen wins over the smallest size, and may itself be smaller.
              Row{Edge::left, {50, 0}, {0, 0, 120, 300}, {-80, 0, 200, 300}},
              Row{Edge::topRight, {90, 90}, {10, 10, 150, 110}, {10, 10, 50, 50}, {0, 0, 160, 120}},
              // A screen left of and below the origin; the other sides may lie beyond it.
              Row{Edge::bottomLeft,
                  {-5000, -5000},
                  {-1280, -900, 680, 600},
                  {-1000, -600, 400, 300},
                  {-1280, -900, 1280, 900}},
              Row{Edge::right, {500, 0}, {-40, -30, 540, 200}, {-40, -30, 300, 200}}}) {
            QCOMPARE(ResizeHandler().resizedFrame(edge, pointer, initial, screen), expected);
        }
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
