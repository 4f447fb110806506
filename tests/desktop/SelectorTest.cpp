// SPDX-License-Identifier: MIT
#include "rig/ColorWindow.h"
#include "tests/desktop/SelectorFixture.h"

#include <QPainter>
#include <QTest>

#include <ranges>

using namespace glimmerpane;
using namespace glimmerpane::testing;

Q_DECLARE_METATYPE(ProgramFixture::WindowManager)

using WindowManager = ProgramFixture::WindowManager;

class SelectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void person_choosesTheArea_data()
    {
        QTest::addColumn<WindowManager>("manager");
        QTest::newRow("no window manager") << WindowManager::None;
        QTest::newRow("openbox") << WindowManager::Openbox;
        QTest::newRow("openbox and picom") << WindowManager::OpenboxAndPicom;
    }

    void person_choosesTheArea()
    {
        QFETCH(WindowManager, manager);
        SelectorFixture fixture(manager);
        const QImage hand = fixture.themeCursor({"openhand", "grab", "hand1"});
        const QImage vertical = fixture.themeCursor({"size_ver", "ns-resize", "sb_v_double_arrow"});
        const QImage horizontal
            = fixture.themeCursor({"size_hor", "ew-resize", "sb_h_double_arrow"});
        const QImage cross = fixture.themeCursor({"crosshair", "cross", "tcross"});
        const QImage arrow = fixture.themeCursor({"left_ptr", "default", "arrow"});
        QVERIFY(fixture.launch() && fixture.open() && fixture.becomes(area));

        struct Zone {
            QPoint place; ///< from the selector's top-left corner, or back from the other one
            Qt::Edges edges;
            QImage cursor;
        };
        const Zone zones[] = {
            {{90, 90}, {}, hand},
            {{90, 5}, Qt::TopEdge, vertical},
            {{90, -5}, Qt::BottomEdge, vertical},
            {{5, 90}, Qt::LeftEdge, horizontal},
            {{-5, 90}, Qt::RightEdge, horizontal},
            {{5, 5}, Qt::LeftEdge | Qt::TopEdge, cross},
            {{-5, 5}, Qt::RightEdge | Qt::TopEdge, cross},
            {{5, -5}, Qt::LeftEdge | Qt::BottomEdge, cross},
            {{-5, -5}, Qt::RightEdge | Qt::BottomEdge, cross},
        };
        QRect frame = area;
        QPoint way(37, -23);
        for (const auto &[place, edges, cursor] : zones) {
            const QPoint from = frame.topLeft()
                + QPoint(place.x() + (place.x() < 0 ? frame.width() : 0),
                         place.y() + (place.y() < 0 ? frame.height() : 0));
            QTRY_COMPARE(fixture.cursorAt(from), cursor);
            fixture.input.drag(from, from + way);
            const QPoint to = from + way;
            edges ? frame.setCoords(edges & Qt::LeftEdge ? to.x() : frame.left(),
                                    edges & Qt::TopEdge ? to.y() : frame.top(),
                                    edges & Qt::RightEdge ? to.x() - 1 : frame.right(),
                                    edges & Qt::BottomEdge ? to.y() - 1 : frame.bottom())
                  : frame.translate(way);
            QVERIFY(fixture.becomes(frame));
            way = -way + QPoint(5, 3);
        }
        QTRY_COMPARE(fixture.cursorAt(frame.center()), arrow);
        QVERIFY(fixture.cursorAt(besidesEverything) != cross);
        const QImage all[] = {hand, vertical, horizontal, cross, arrow};
        for (const QImage &one : all) { // otherwise the comparisons above prove nothing
            QCOMPARE(std::ranges::count(all, one), 1);
        }

        fixture.confirm();
        QVERIFY(fixture.becomes(std::nullopt));
        const CaptureFrame chosen{.x = double(frame.x()),
                                  .y = double(screenSize.height() - frame.y() - frame.height()),
                                  .width = double(frame.width()),
                                  .height = double(frame.height())};
        QTRY_COMPARE(fixture.savedArea(), chosen);

        QVERIFY(fixture.open() && fixture.becomes(frame));
        fixture.input.drag(frame.topLeft() + QPoint(90, 90), frame.topLeft() + QPoint(190, 80));
        QVERIFY(fixture.becomes(frame.translated(100, -10)));
        fixture.input.pressKey(keys::shift);
        const int width = frame.width() - 70;
        const QRect smaller(frame.topLeft() + QPoint(100, -10),
                            QSize(width, qRound(double(width) * frame.height() / frame.width())));
        fixture.input.moveTo(smaller.topLeft() + QPoint(frame.width() - 5, frame.height() - 5));
        fixture.input.press();
        fixture.input.moveTo(smaller.bottomRight() + QPoint(1, -30));
        QVERIFY(fixture.becomes(smaller));
        const QRect below(smaller.bottomLeft() + QPoint(0, 1), QSize(width, 40));
        const auto label = [&] {
            return required(fixture.client.screenshot(below)).pixelColor(below.width() / 2, 8);
        };
        QTRY_COMPARE(label(), QColor(24, 24, 27));
        fixture.input.release();
        fixture.input.releaseKey(keys::shift);
        QTRY_VERIFY(label() != QColor(24, 24, 27));
        fixture.cancel();
        QVERIFY(fixture.becomes(std::nullopt));
        QVERIFY(fixture.open(places::resetArea));
        QVERIFY(fixture.becomes(QRect(340, 312, 600, 400)));
        fixture.cancel();
        QVERIFY(fixture.becomes(std::nullopt));
        QVERIFY(fixture.open());
        QVERIFY(fixture.becomes(frame));
    }

    void selector_isGlassWithABorder_andLeavesNoTrail_data() { person_choosesTheArea_data(); }

    void selector_isGlassWithABorder_andLeavesNoTrail()
    {
        QFETCH(WindowManager, manager);
        SelectorFixture fixture(manager);
        const QColor blueish(40, 90, 200);
        const QColor white(Qt::white);
        const QRect paper(420, 400, 200, 250);
        std::vector<QRect> sheets{{QPoint(), screenSize}, paper};
        for (int y = 400; y < 550; y += 2) {
            sheets.push_back({800, y, 150, 1});
        }
        QImage before(screenSize, QImage::Format_RGB32);
        std::vector<ColorWindow> windows;
        for (const QRect &sheet : sheets) {
            const QColor color = windows.empty() ? blueish : white;
            windows.push_back(required(
                ColorWindow::show(fixture.client, {.rectangle = sheet, .color = color.rgb()})));
            QPainter(&before).fillRect(sheet, color);
        }
        for (const ColorWindow &window : windows | std::views::reverse) { // below what is managed
            window.lower();
        }
        QVERIFY(fixture.launch());
        const QRect main = *geometryOf(fixture.client, *fixture.mainWindow());
        const auto screenshot = [&] { return required(fixture.client.screenshot()); };
        QTRY_VERIFY(isEqualBut(screenshot(), before, main));

        QVERIFY(fixture.open());
        fixture.input.moveTo(besidesEverything);
        QTRY_VERIFY(showsWholeSelector(screenshot().copy(area)));
        const QImage shown = screenshot();
        QVERIFY(isEqualBut(shown, before, QRegion(area) + main));
        QVERIFY(isNear(shown.pixelColor(720, 450), throughGlass(blueish)));
        QVERIFY(isNear(shown.pixelColor(520, 560), throughGlass(white)));
        const QColor line = shown.pixelColor(870, 520);
        const QColor gap = shown.pixelColor(870, 521);
        QVERIFY2(std::abs(line.red() - gap.red()) < 30, "The stripes are not blurred");
        QVERIFY(line.red() > throughGlass(blueish).red() + 20);

        // Everything moves with the pointer and is right at once; nothing stays behind.
        const QRect moved = area.translated(90, 60);
        fixture.input.drag(area.topLeft() + QPoint(50, 50), moved.topLeft() + QPoint(50, 50));
        QVERIFY(fixture.becomes(moved));
        fixture.input.moveTo(besidesEverything);
        QTRY_VERIFY(showsWholeSelector(screenshot().copy(moved)));
        QTRY_VERIFY(isEqualBut(screenshot(), before, QRegion(moved) + main));
        QTRY_VERIFY(isNear(screenshot().pixelColor(520, 560), throughGlass(white)));
        // It follows what happens behind it, and never shows the selector itself.
        const auto becomes = [&](QPoint place, const QColor &color) {
            return waitFor(
                [&] { return isNear(screenshot().pixelColor(place), throughGlass(color)); },
                patience);
        };
        const QPoint besidesOutline = moved.topRight() + QPoint(-4, 60);
        for (const QColor &color : {QColor(200, 60, 20), blueish}) {
            windows[0].setColor(color.rgb());
            QVERIFY(becomes(besidesOutline, color) && becomes({520, 560}, white));
        }
        for (const auto &[place, color] :
             {std::pair(paper.translated(300, 150), blueish), std::pair(paper, white)}) {
            windows[1].setGeometry(place);
            QVERIFY(becomes({520, 560}, color));
        }
        xcb_unmap_window(fixture.client.connection(), windows[1].id());
        QVERIFY(becomes({520, 560}, blueish));
        xcb_map_window(fixture.client.connection(), windows[1].id());
        QVERIFY(becomes({520, 560}, white) && showsWholeSelector(screenshot().copy(moved)));
        // The glass is right also where something lay over it for a while.
        const QPoint covered(540, 430);
        QVERIFY(ColorWindow::show(fixture.client, {.rectangle = {covered, QSize(9, 9)}}));
        QTRY_VERIFY(isNear(screenshot().pixelColor(covered), throughGlass(white)));
        fixture.cancel();
        fixture.input.moveTo(besidesEverything);
        QTRY_VERIFY(isEqualBut(screenshot(), before, main));
    }

    void selector_isTranslucent_whereTheCompositorBlurs()
    {
        SelectorFixture fixture(WindowManager::OpenboxAndPicom);
        // picom does not look at it, so what lies behind comes through sharp here.
        const QByteArray property = "_KDE_NET_WM_BLUR_BEHIND_REGION";
        const auto atom = fixture.client.atom(property);
        xcb_change_property(fixture.client.connection(), XCB_PROP_MODE_REPLACE,
                            fixture.client.root(), atom, atom, 8, 0, nullptr);
        const auto desktop = required(ColorWindow::show(
            fixture.client, {.rectangle = {QPoint(), screenSize}, .color = 0xffffffff}));
        desktop.lower();
        QVERIFY(fixture.launch() && fixture.open());
        const auto region = propertyOf(fixture.client, *fixture.selector(), property);
        QVERIFY(region && region->bytes.isEmpty());
        for (const QColor &color : {QColor(255, 255, 255), QColor(40, 90, 200)}) {
            desktop.setColor(color.rgb());
            const auto seen = [&] { return required(fixture.client.screenshot(area)); };
            QTRY_VERIFY(isNear(seen().pixelColor(60, 60), throughGlass(color)));
        }
        QVERIFY(showsWholeSelector(required(fixture.client.screenshot(area))));
    }

    void selector_staysAbove_andTakesNoKeys()
    {
        SelectorFixture fixture(WindowManager::Openbox);
        const auto wall = required(ColorWindow::show(fixture.client,
                                                     {.rectangle = {0, 0, 400, 300},
                                                      .color = 0xff808080,
                                                      .kind = ColorWindow::Kind::Managed}));
        QVERIFY(waitFor([&] { return isViewable(fixture.client, wall.id()); }, patience));
        QVERIFY(fixture.launch() && fixture.open());
        const auto isOnTop
            = [&] { return showsWholeSelector(required(fixture.client.screenshot(area))); };
        QTRY_VERIFY(isOnTop());
        const auto newcomer = required(ColorWindow::show(
            fixture.client,
            {.rectangle = area, .color = 0xffffff00, .kind = ColorWindow::Kind::Managed}));
        QVERIFY(waitFor([&] { return isViewable(fixture.client, newcomer.id()); }, patience));
        QTRY_VERIFY(isOnTop());
        // EWMH: _NET_WM_STATE_ADD is 1.
        sendMessage(fixture.client, wall.id(), "_NET_WM_STATE", 1, fixture.client.root(),
                    fixture.client.atom("_NET_WM_STATE_FULLSCREEN"));
        sendMessage(fixture.client, wall.id(), "_NET_ACTIVE_WINDOW", 2, fixture.client.root());
        QTRY_COMPARE(geometryOf(fixture.client, wall.id()), QRect(QPoint(), screenSize));
        QTRY_VERIFY(isOnTop());
        QCOMPARE(required(fixture.client.screenshot({1100, 900, 1, 1})).pixelColor(0, 0),
                 QColor(0x80, 0x80, 0x80));

        fixture.input.moveTo(area.topLeft() + QPoint(100, 100));
        for (const auto key : {keys::escape, keys::enter, keys::space, keys::tab}) {
            QVERIFY(fixture.input.typeKey(key));
        }
        fixture.input.drag(area.topLeft() + QPoint(100, 100), area.topLeft() + QPoint(110, 100));
        QVERIFY(fixture.becomes(area.translated(10, 0)));
    }

    void selector_canBeOpenedAgain_whenItWasTakenAway()
    {
        using Way = void (*)(SelectorFixture &);
        const Way kill = [](SelectorFixture &fixture) {
            xcb_kill_client(fixture.client.connection(), *fixture.selector());
        };
        const Way destroy = [](SelectorFixture &fixture) {
            xcb_destroy_window(fixture.client.connection(), *fixture.selector());
        };
        const Way takeDisplay = [](SelectorFixture &fixture) {
            fixture.server.setMonitor(QStringLiteral("Left"), {0, 0, 400, 1024},
                                      QStringLiteral("screen"));
        };
        for (const Way takeAway : {kill, destroy, takeDisplay}) {
            SelectorFixture fixture;
            QVERIFY(fixture.launch() && fixture.open() && fixture.becomes(area));
            takeAway(fixture);
            fixture.client.sync();
            QVERIFY(fixture.becomes(std::nullopt));
            QVERIFY(fixture.open(places::resetArea));
            fixture.confirm();
            QVERIFY(fixture.becomes(std::nullopt));
            QTRY_COMPARE(fixture.savedArea()->width, 600);
        }
    }

    void selector_isWhole_atEveryMomentOfADrag()
    {
        SelectorFixture fixture(WindowManager::Openbox);
        QVERIFY(fixture.launch() && fixture.open());
        QTRY_VERIFY(showsWholeSelector(required(fixture.client.screenshot(area))));
        for (const QPoint from : {area.topLeft() + QPoint(50, 50), area.topLeft() + QPoint(4, 4)}) {
            QVERIFY(fixture.becomes(area));
            fixture.input.moveTo(from);
            fixture.input.press();
            for (int i = 1; i <= 40; ++i) {
                fixture.input.moveTo(from + QPoint(i * 37 % 300, i * 53 % 200));
                QVERIFY(showsWholeSelector(required(fixture.client.screenshot())));
            }
            fixture.input.moveTo(from);
            fixture.input.release();
        }
    }
};

QTEST_APPLESS_MAIN(SelectorTest)
#include "SelectorTest.moc"
