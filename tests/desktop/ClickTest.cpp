// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/ProgramFixture.h"
#include "rig/WaitFor.h"

#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect area(500, 200, 400, 300);
constexpr QPoint middle = area.center();
constexpr QRgb color = 0xffc83c28;

/** The program while it shares an area of one colour. All places are root pixels. */
struct ClickFixture : ProgramFixture {
    ClickFixture()
        : window(required(ColorWindow::show(
              client, {.rectangle = area.adjusted(-50, -50, 50, 50), .color = color})))
    {
        startWith(area, {20, 560}, true);
        output = required(CapturedWindow::open(client, *outputWindow()));
        QVERIFY(showsArea(area));
    }

    /** How much of a ring's line is to be seen around the place: 0 nothing, 1 nothing else. */
    static double ringIn(const QImage &picture, QPoint place)
    {
        double most = 0;
        for (const QPoint way : {QPoint(29, 0), QPoint(-30, 0), QPoint(0, 29), QPoint(0, -30)}) {
            const QPoint pixel = place + way - area.topLeft();
            if (picture.rect().contains(pixel)) {
                const double red = qRed(picture.pixel(pixel)); // the ring's blue has none
                most = std::max(most, 1 - red / qRed(color));
            }
        }
        return most;
    }
    double ringAt(QPoint place) { return ringIn(required(output->picture()), place); }
    bool showsRing(QPoint place)
    {
        return waitFor([&] { return ringAt(place) > 0; }, patience);
    }

    ColorWindow window;
    std::optional<CapturedWindow> output;
};

} // namespace

class ClickTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void press_showsARing_whenItIsInTheArea()
    {
        constexpr QPoint outside(490, 300);
        for (const auto &[place, button, isShown] : {std::tuple(middle, 1, true),
                                                     {middle, 3, true},
                                                     {middle, 2, false},
                                                     {middle, 4, false},
                                                     {outside, 1, false}}) { // 4 is the wheel
            ClickFixture fixture;
            fixture.input.click(place, static_cast<std::uint8_t>(button));
            if (!isShown) {
                // A press is looked for where the pointer is, so it has to be seen there before the
                // next one. With that one's ring comes none.
                const auto isSeen = [&, &place = place] {
                    const QImage picture = required(fixture.output->picture());
                    return place == outside || picture.pixel(place - area.topLeft()) != color;
                };
                QVERIFY(waitFor(isSeen, patience));
                const QPoint second = area.topLeft() + QPoint(90, 90);
                fixture.input.click(second);
                QVERIFY(fixture.showsRing(second));
                QCOMPARE(fixture.ringAt(place), 0.0);
            } else {
                QVERIFY(fixture.showsRing(place));
            }
            const QImage screen = required(fixture.client.screenshot(area));
            QCOMPARE(ClickFixture::ringIn(screen, place), 0.0);
            QVERIFY(fixture.showsArea(area));
        }
    }

    void press_showsARing_whileAnotherClientHoldsThePointer()
    {
        ClickFixture fixture;
        const auto grabber = required(XClient::connect(fixture.server.displayName()));
        const auto grab = ask<xcb_grab_pointer, xcb_grab_pointer_reply>(
            grabber, std::uint8_t(0), fixture.window.id(),
            std::uint16_t(XCB_EVENT_MASK_BUTTON_PRESS), std::uint8_t(XCB_GRAB_MODE_ASYNC),
            std::uint8_t(XCB_GRAB_MODE_ASYNC), xcb_window_t(XCB_NONE), xcb_cursor_t(XCB_NONE),
            xcb_timestamp_t(XCB_CURRENT_TIME));
        QVERIFY(grab && grab->status == XCB_GRAB_STATUS_SUCCESS);
        fixture.input.click(middle);
        QVERIFY(fixture.showsRing(middle));
    }

    void rings_fadeOneByOne_andTouchNothingElse()
    {
        ClickFixture fixture;
        const QPoint second = middle + QPoint(100, 0);
        fixture.input.click(middle);
        QVERIFY(waitFor([&] { return fixture.ringAt(middle) > 0 && fixture.ringAt(middle) < 0.8; },
                        patience));
        fixture.input.click(second);
        QImage seen;
        const auto showsSecond = [&] {
            seen = required(fixture.output->picture());
            return ClickFixture::ringIn(seen, second) > 0;
        };
        QVERIFY(waitFor(showsSecond, patience));
        QVERIFY(ClickFixture::ringIn(seen, second) > ClickFixture::ringIn(seen, middle));
        // Nothing beside the rings is another than on the screen, nothing inside either.
        for (const QPoint place : {QPoint(0, 0), QPoint(33, 0), QPoint(0, -34)}) {
            QCOMPARE(seen.pixel(middle - area.topLeft() + place), color);
        }
        QVERIFY(fixture.showsArea(area));
    }

    void picture_isWhole_whateverHappensUnderARing()
    {
        ClickFixture fixture;
        fixture.input.click(middle);
        QVERIFY(fixture.showsRing(middle));
        const auto newcomer = required(ColorWindow::show(
            fixture.client, {.rectangle = {middle, QSize(60, 20)}, .color = 0xff00ff00}));
        for (const int x : {-28, 0, 30}) {
            fixture.input.moveTo(middle + QPoint(x, 3));
        }
        QVERIFY(fixture.showsArea(area));
        newcomer.setColor(0xff0000ff);
        QVERIFY(fixture.showsArea(area));
        for (int i = 0; i < 200; ++i) {
            fixture.input.click(area.topLeft() + QPoint(i * 37 % 400, i * 53 % 300));
        }
        QVERIFY(fixture.showsArea(area));
    }
};

QTEST_GUILESS_MAIN(ClickTest)
#include "ClickTest.moc"
