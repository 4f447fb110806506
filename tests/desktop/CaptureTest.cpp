// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/DamageWatch.h"
#include "tests/desktop/SelectorFixture.h"

#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect source(500, 150, 320, 240);
constexpr QPoint mainWindowPlace(20, 560);
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;

/** The program while it shares an area, with the pointer beside it. All places are root pixels. */
struct CaptureFixture : SelectorFixture {
    explicit CaptureFixture(const QRect &place = source)
    {
        input.moveTo(besidesEverything);
        startWith(place, mainWindowPlace, true);
    }

    QImage picture() const { return required(windowPicture(client, *outputWindow())); }
};

} // namespace

class CaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_isTheArea_whereverItLies()
    {
        for (const QRect place :
             {source, QRect(0, 0, 1280, 1024), QRect(-50, -40, 200, 200),
              QRect(1200, 1000, 200, 200), QRect(640, 512, 1, 1), QRect(-100, -100, 1600, 1300)}) {
            CaptureFixture fixture(place);
            const auto window = required(ColorWindow::show(
                fixture.client, {.rectangle = {600, 500, 680, 524}, .color = green}));
            QVERIFY(fixture.showsArea(place));
            // The pointer over an edge of the picture is cut off there.
            fixture.input.moveTo(place.topLeft() + QPoint(place.width() - 3, place.height() / 2));
            QVERIFY(fixture.showsArea(place));
        }
    }

    void picture_followsTheScreen_whenAPartChangesOrIsLost()
    {
        CaptureFixture fixture;
        const auto window = required(ColorWindow::show(
            fixture.client, {.rectangle = source.adjusted(20, 20, -100, -100), .color = red}));
        QVERIFY(fixture.showsArea(source));
        window.setColor(blue);
        QVERIFY(fixture.showsArea(source));
        window.setGeometry(source.adjusted(150, 100, 40, 40));
        QVERIFY(fixture.showsArea(source));
        // Many small rectangles at once, more than are copied one by one.
        for (int i = 0; i < 400; ++i) {
            const QPoint place(i * 37 % 310, i * 53 % 230);
            fixture.client.fill(fixture.client.root(), {source.topLeft() + place, QSize(3, 3)},
                                green);
        }
        QVERIFY(fixture.showsArea(source));
        xcb_clear_area(fixture.client.get(), 1, *fixture.outputWindow(), 10, 10, 100, 100);
        fixture.client.sync();
        QVERIFY(fixture.showsArea(source));
    }

    void picture_hasThePointer_whereverItGoesAndHoweverItLooks()
    {
        CaptureFixture fixture;
        QVERIFY(fixture.showsArea(source));
        for (const QPoint offset : {QPoint(50, 50), QPoint(55, 52), QPoint(0, 0), QPoint(319, 239),
                                    QPoint(160, -3), QPoint(-2, 120), QPoint(100, 100)}) {
            fixture.input.moveTo(source.topLeft() + offset);
            QVERIFY(fixture.showsArea(source));
        }
        // Changes under a still pointer are visible around and through it, and so is a new look.
        const auto window = required(ColorWindow::show(
            fixture.client, {.rectangle = source.adjusted(90, 90, 0, 0), .color = red}));
        QVERIFY(fixture.showsArea(source));
        const QImage arrow = fixture.picture();
        fixture.setCursor(window, {"xterm"});
        QVERIFY(fixture.showsArea(source));
        QVERIFY(fixture.picture() != arrow);
        fixture.input.moveTo(besidesEverything);
        QVERIFY(fixture.showsArea(source));
    }

    void frames_areNotMade_whenNothingInTheAreaChanges()
    {
        CaptureFixture fixture;
        const auto outside = required(
            ColorWindow::show(fixture.client, {.rectangle = {600, 600, 100, 100}, .color = red}));
        const auto inside
            = required(ColorWindow::show(fixture.client, {.rectangle = source, .color = green}));
        QVERIFY(fixture.showsArea(source));
        auto watch
            = required(DamageWatch::open(fixture.server.displayName(), *fixture.outputWindow()));
        for (int i = 0; i < 20; ++i) {
            outside.setColor(i % 2 != 0 ? red : blue);
            fixture.input.moveTo({600 + i, 700});
        }
        // The next change in the area comes after all of these, and alone.
        inside.setColor(blue);
        QVERIFY(fixture.showsArea(source));
        while (watch.take()) { }
        QCOMPARE(watch.count(), 1);
    }
};

QTEST_GUILESS_MAIN(CaptureTest)
#include "CaptureTest.moc"
