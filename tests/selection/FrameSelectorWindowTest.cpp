// SPDX-License-Identifier: MIT
#include "selection/FrameSelectorWindow.h"
#include "app/AppCoordinator.h"
#include "tests/support/Fakes.h"
#include "ui/Theme.h"

#include <QApplication>

#include <QTest>

#include <cmath>
#include <limits>

using namespace glimmerpane;
using Kind = PointerEvent::Kind;

namespace
{

struct FakeOverlayWindow : OverlayWindow {
    explicit FakeOverlayWindow(QStringList &log)
        : log_(log)
    {
    }
    ~FakeOverlayWindow() override { log_.append(QStringLiteral("destroyed")); }
    void present(QRect newFrame, const OverlayPicture &newPicture,
                 const OverlayLabel &newLabel) override
    {
        frame = newFrame;
        picture = newPicture;
        label = QRect(newLabel.topLeft, newLabel.picture.size());
    }
    void setCursor(Qt::CursorShape) override { }
    void hide() override { log_.append(QStringLiteral("hidden")); }

    QRect frame;
    OverlayPicture picture;
    QRect label; ///< empty if there is none

private:
    QStringList &log_;
};

/** Its X server refuses overlays once `refuses` is set. */
struct OverlayDesktop : FakeDesktop {
    bool refuses = false;
    FakeOverlayWindow *overlay = nullptr; ///< the latest
    QStringList log;

    OverlayDesktop() { all.front().pixels.setSize({1920, 1080}); }

    using FakeDesktop::make;
    Made<OverlayWindow> make(const QString &, QRect, const FrostedGlass &) override
    {
        if (refuses) {
            return std::unexpected(Error{});
        }
        auto made = std::make_unique<FakeOverlayWindow>(log);
        overlay = made.get();
        return made;
    }
};

/** The selector of a coordinator, and the pointer over it in desktop coordinates. */
struct Selector {
    OverlayDesktop desktop;
    AppCoordinator coordinator{desktop.backend(), [] { }};
    std::optional<CaptureFrame> confirmed;

    void open(std::optional<CaptureFrame> area = CaptureFrame{300, 200, 600, 400})
    {
        coordinator.showFrameSelector(
            area,
            [this](const CaptureFrame &frame) {
                confirmed = frame;
                desktop.log.append(QStringLiteral("confirmed"));
            },
            [this] { desktop.log.append(QStringLiteral("cancelled")); });
    }

    void pointer(Kind kind, QPointF place, bool isShiftDown = false) const
    {
        const Rect spot{.x = place.x(), .y = place.y(), .width = 0, .height = 0};
        const auto handler = desktop.overlay->onPointer;
        handler({.kind = kind,
                 .position = desktop.mainDisplay()->areaPixels(spot).topLeft(),
                 .isShiftDown = isShiftDown});
    }
    void drag(QPointF from, QPointF to, bool isShiftDown = false) const
    {
        pointer(Kind::Press, from);
        pointer(Kind::Drag, (from + to) / 2);
        pointer(Kind::Drag, to, isShiftDown);
        pointer(Kind::Release, to);
    }
    void click(QPointF place) const
    {
        pointer(Kind::Press, place);
        pointer(Kind::Release, place);
    }
};

/** Whether labels lie within their buttons and are readable, and the buttons seen on any glass. */
bool isUsable(const QImage &panel)
{
    // The highest contrast to a colour on the way down a button, in this column.
    const auto contrastIn = [&](int x, int top, int bottom, const QColor &to) {
        double most = 1;
        for (int y = top; y < bottom; ++y) {
            const QColor color = panel.pixelColor(x, y);
            most = color.alpha() == 255 ? std::max(most, contrast(color, to)) : most;
        }
        return most;
    };
    for (const int top : {0, 30}) {
        const QColor fill = panel.pixelColor(5, top + 15);
        double label = 1;
        for (int x = 8; x < 112; ++x) {
            label = std::max(label, contrastIn(x, top + 6, top + 24, fill));
        }
        const double beside = std::max(contrastIn(5, top + 6, top + 24, fill),
                                       contrastIn(114, top + 6, top + 24, fill));
        const FrostedGlass glass = BorderView::glass(1);
        const double border
            = std::min(contrastIn(60, top, top + 4, mixed(Qt::black, glass.tint, glass.strength)),
                       contrastIn(60, top, top + 4, mixed(Qt::white, glass.tint, glass.strength)));
        if (label < 4.5 || beside > 1 || border < 3) {
            return false;
        }
    }
    return true;
}

// In the middle of the area that open() has by default.
constexpr QPointF confirmButton(600, 415);
constexpr QPointF cancelButton(600, 385);

} // namespace

class FrameSelectorWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWayOut_endsInExactlyOneCallback()
    {
        const auto lose = [](Selector &s) {
            const auto handler = s.desktop.overlay->onLost;
            handler();
        };
        const std::pair<std::function<void(Selector &)>, const char *> ways[]
            = {{[](Selector &s) { s.click(confirmButton); }, "confirmed hidden destroyed"},
               {[](Selector &s) { s.click(cancelButton); }, "hidden cancelled destroyed"},
               {lose, "hidden cancelled destroyed"},
               {[&](Selector &s) {
                    s.pointer(Kind::Press, confirmButton);
                    lose(s);
                },
                "hidden cancelled destroyed"},
               {[](Selector &s) { s.coordinator.closeFrameSelector(); }, "hidden destroyed"},
               {[](Selector &s) {
                    s.drag(confirmButton, {600, 500});
                    s.drag({600, 500}, confirmButton);
                    s.drag(confirmButton, cancelButton);
                },
                ""}};
        for (const auto &[way, log] : ways) {
            Selector selector;
            selector.open();
            way(selector);
            QCOMPARE(selector.desktop.log.join(u' '), QString::fromLatin1(log));
            selector.coordinator.closeFrameSelector();
            selector.desktop.log.clear();
            selector.desktop.refuses = true;
            selector.open();
            QCOMPARE(selector.desktop.log, QStringList{QStringLiteral("cancelled")});
        }
    }

    void selector_opensWhereItCanBeUsed()
    {
        using Area = std::optional<CaptureFrame>;
        const QRect byDefault(660, 340, 600, 400);
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const std::pair<Area, QRect> rows[]
            = {{std::nullopt, byDefault},
               {CaptureFrame{10, 20, -300, -100}, {10, 960, 300, 100}},
               {CaptureFrame{-50, -20, 300, 100}, {-50, 1000, 300, 100}},
               {CaptureFrame{2000, 500, 300, 100}, {2000, 480, 300, 100}}, // the other display
               {CaptureFrame{-900, 5000, 300, 100}, {0, 0, 300, 100}}, // no display
               {CaptureFrame{300, 200, 50, 40}, {250, 815, 150, 90}}, // too small for its buttons
               {CaptureFrame{300, 200, 149, 300}, {300, 580, 150, 300}},
               {CaptureFrame{1890, 0, 20, 10}, {1770, 990, 150, 90}},
               {CaptureFrame{1925, 500, 40, 100}, {1920, 480, 150, 100}},
               {CaptureFrame{10, 20, 0, 100}, byDefault},
               {CaptureFrame{std::nan(""), 20, 300, 100}, byDefault},
               {CaptureFrame{10, 20, infinity, 100}, byDefault},
               {CaptureFrame{10, 20, 1e9, 1e300}, byDefault}};
        for (const auto &[area, frame] : rows) {
            Selector selector;
            selector.desktop.all.push_back({.name = {}, .pixels = {1920, 0, 1280, 1024}});
            selector.open(area);
            QCOMPARE(selector.desktop.overlay->frame, frame);
        }
    }

    void drag_givesThisFrame()
    {
        struct Row {
            CaptureFrame area;
            QPointF from;
            QPointF to;
            CaptureFrame expected;
            bool keepsRatio = false;
        };
        const CaptureFrame usual{300, 200, 600, 400};
        const CaptureFrame elsewhere{2000, 500, 300, 200};
        const QPointF lastPixel(1919, 1);
        for (const auto &[area, from, to, expected, keepsRatio] :
             {Row{{300.25, 200.5, 600, 400}, {500, 300}, {540, 270}, {340.25, 170.5, 600, 400}},
              // A pixel may be half a point, but areas are of whole ones.
              Row{{200, 150, 250, 180}, {216, 200}, {226.5, 200}, {211, 150, 250, 180}},
              // 16 points from a side are inside, 15 are on it.
              Row{usual, {884, 300}, {900, 300}, {316, 200, 600, 400}},
              Row{usual, {316, 300}, {326, 300}, {310, 200, 600, 400}},
              Row{usual, {885, 300}, {950, 300}, {300, 200, 650, 400}},
              Row{usual, {315, 300}, {350, 300}, {350, 200, 550, 400}},
              Row{usual, {500, 585}, {500, 620}, {300, 200, 600, 420}},
              Row{usual, {500, 215}, {500, 180}, {300, 180, 600, 420}},
              Row{usual, {315, 585}, {250, 650}, {250, 200, 650, 450}},
              Row{usual, {885, 585}, {950, 650}, {300, 200, 650, 450}},
              Row{usual, {315, 215}, {250, 150}, {250, 150, 650, 450}},
              Row{usual, {890, 300}, {350, 300}, {300, 200, 200, 400}}, // not narrower
              Row{usual, {310, 300}, {890, 300}, {700, 200, 200, 400}},
              Row{usual, {500, 590}, {500, 100}, {300, 200, 600, 150}}, // not lower
              Row{usual, {310, 590}, {-50, 1200}, {0, 200, 900, 880}}, // not beyond the screen
              // The screen wins over the smallest size.
              Row{{-80, 0, 200, 300}, {-75, 150}, {50, 150}, {0, 0, 120, 300}},
              Row{{1800, 0, 200, 300}, {1995, 150}, {1850, 150}, {1800, 0, 120, 300}},
              Row{usual, {500, 300}, {0, 300}, {0, 200, 600, 400}},
              Row{usual, {500, 300}, {500, 1080}, {300, 680, 600, 400}},
              Row{{-10, -10, 3000, 2000}, {500, 300}, {600, 400}, {0, 0, 3000, 2000}},
              Row{usual, {890, 210}, lastPixel, {300, 0, 1620, 600}},
              Row{elsewhere, {2050, 550}, {2060, 550}, {1620, 500, 300, 200}},
              Row{elsewhere, {2290, 600}, {2400, 600}, {1620, 500, 300, 200}},
              Row{usual, {890, 590}, {960, 590}, {300, 200, 660, 440}, true},
              Row{usual, {890, 590}, {800, 560}, {300, 200, 540, 360}, true},
              Row{usual, {310, 210}, {360, 120}, {180, 120, 720, 480}, true},
              Row{usual, {890, 300}, {1050, 999}, {300, 150, 750, 500}, true},
              Row{usual, {500, 590}, {0, 350}, {488, 200, 225, 150}, true}, // not smaller
              Row{usual, {890, 590}, {301, 201}, {300, 200, 225, 150}, true},
              Row{usual, {890, 590}, {1900, 900}, {300, 200, 1320, 880}, true}, // on the screen
              Row{usual, {310, 590}, {0, 0}, {0, 200, 900, 600}, true},
              Row{{300, 20, 600, 400}, {890, 200}, {1200, 200}, {300, 0, 900, 600}, true},
              Row{usual, {500, 300}, {540, 270}, {340, 170, 600, 400}, true}}) {
            for (const double scale : {1.0, 2.0}) {
                Selector selector;
                selector.desktop.scale = scale;
                const QSize size = QSize(1920, 1080) * scale;
                // The primary display need not be where the root begins.
                const QPoint origin = scale > 1 ? QPoint(1280, 400) : QPoint();
                const QPoint right = origin + QPoint(size.width(), 0);
                selector.desktop.all = {{.name = {}, .pixels = {origin, size}},
                                        {.name = {}, .pixels = {right, size}}};
                selector.open(area);
                selector.drag(from, to == lastPixel ? QPointF(1920 - 1 / scale, 1 / scale) : to,
                              keepsRatio);
                const Rect frame{expected.x, expected.y, expected.width, expected.height};
                QCOMPARE(selector.desktop.overlay->frame,
                         selector.desktop.mainDisplay()->areaPixels(frame));
                selector.click({frame.midX(), frame.midY() + 15});
                QCOMPARE(selector.confirmed, expected);
            }
        }
    }

    void size_isToldBesideTheAreaWhileItIsDragged()
    {
        const QRect screen(0, 0, 1920, 1080);
        using Side = bool (*)(QRect area, QRect label);
        const Side below = [](QRect area, QRect label) { return label.top() > area.bottom(); };
        const Side above = [](QRect area, QRect label) { return label.bottom() < area.top(); };
        const Side right = [](QRect area, QRect label) { return label.left() > area.right(); };
        const Side left = [](QRect area, QRect label) { return label.right() < area.left(); };
        const Side inside = [](QRect area, QRect label) { return area.contains(label); };
        for (const auto &[area, side] : {std::pair(CaptureFrame{300, 200, 600, 400}, below),
                                         std::pair(CaptureFrame{0, 200, 160, 400}, below),
                                         std::pair(CaptureFrame{300, 10, 600, 400}, above),
                                         std::pair(CaptureFrame{300, 10, 600, 1060}, right),
                                         std::pair(CaptureFrame{1300, 0, 620, 1080}, left),
                                         std::pair(CaptureFrame{0, 0, 1920, 1080}, inside)}) {
            for (const Kind end : {Kind::Release, Kind::Move, Kind::Leave}) {
                Selector selector;
                selector.open(area);
                const QRect &label = selector.desktop.overlay->label;
                const QPointF grip(area.x + 50, area.y + 50);
                selector.pointer(Kind::Press, grip);
                QVERIFY(label.isEmpty());
                selector.pointer(Kind::Drag, grip);
                QVERIFY(!label.isEmpty() && screen.contains(label));
                QVERIFY(side(selector.desktop.overlay->frame, label));
                selector.pointer(end, grip);
                QVERIFY(label.isEmpty());
            }
        }
    }

    void marksAndButtons_lieOnWholePixels_atAnyScale()
    {
        Selector selector;
        selector.desktop.scale = 1.5;
        selector.open();
        const OverlayPicture &picture = selector.desktop.overlay->picture;
        QCOMPARE(picture.panelOrigin, QPoint(360, 255));
        QCOMPARE(picture.marks.size(), std::size_t(12));
        QCOMPARE(picture.marks[1], QRect(0, 0, 900, 3));
        QCOMPARE(picture.marks[4 + 1], QRect(870, 570, 30, 30));
        QCOMPARE(picture.marks[4 + 5], QRect(405, 0, 90, 12));
    }

    void frame_keepsItsPixels_whenTheDisplaysChange()
    {
        Selector selector;
        selector.open();
        // The display becomes 100 pixels lower, so that its bottom comes nearer to the window.
        selector.desktop.all.front().pixels.setHeight(980);
        selector.click({600, 315});
        QCOMPARE(selector.confirmed, (CaptureFrame{300, 100, 600, 400}));

        selector.open();
        selector.desktop.all.clear();
        const auto handler = selector.desktop.overlay->onPointer;
        handler({.kind = Kind::Press, .position = {400, 600}});
        handler({.kind = Kind::Drag, .position = {500, 600}});
        QCOMPARE(selector.desktop.overlay->frame, QRect(300, 380, 600, 400));
    }

    void look_followsThePointerAndTheAppearance()
    {
        Selector selector;
        selector.open();
        const auto &picture = selector.desktop.overlay->picture;
        const QImage idle = picture.panel;
        QVERIFY(isUsable(idle) && idle.copy(0, 0, 9, 30) != idle.copy(0, 30, 9, 30));
        QImage previous = idle;
        for (const auto kind : {Kind::Move, Kind::Press}) {
            selector.pointer(kind, confirmButton);
            QVERIFY(picture.panel.copy(0, 0, 120, 30) != previous.copy(0, 0, 120, 30));
            QVERIFY(picture.panel.copy(0, 30, 120, 30) == idle.copy(0, 30, 120, 30));
            QVERIFY(isUsable(picture.panel));
            previous = picture.panel;
        }
        selector.pointer(Kind::Leave, {600, 500}); // as when something takes the pointer away
        QVERIFY(picture.panel == idle);
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * 3);
        QApplication::setFont(font);
        QTRY_VERIFY(picture.panel != idle);
        QVERIFY(isUsable(picture.panel));

        for (const bool isDark : {true, false}) {
            QPalette palette(isDark ? Qt::black : Qt::white);
            palette.setColor(QPalette::WindowText, isDark ? Qt::white : Qt::black);
            QApplication::setPalette(palette);
            QTRY_COMPARE(picture.markColor, isDark ? QColor(10, 132, 255) : QColor(0, 122, 255));
        }
    }
};

QTEST_MAIN(FrameSelectorWindowTest)
#include "FrameSelectorWindowTest.moc"
