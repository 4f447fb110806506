// SPDX-License-Identifier: MIT
#include "rig/WaitFor.h"
#include "tests/desktop/CaptureFixture.h"

#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect area(300, 200, 400, 300);
constexpr QPoint middle = area.center();
constexpr QRgb color = 0xffc83c28;

/** A shared area of one colour. All places are root pixels. */
struct ClickFixture : CaptureFixture {
    ClickFixture()
        : window(required(ColorWindow::show(
              client, {.rectangle = area.adjusted(-50, -50, 50, 50), .color = color})))
    {
        share(area);
    }

    /** How much of a ring's line is to be seen around the place: 0 nothing, 1 nothing else. */
    double ringAt(QPoint place)
    {
        const QImage picture = actual();
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
    bool showsRing(QPoint place)
    {
        return waitFor([&] { return ringAt(place) > 0; }, patience);
    }
    bool isWholeAgain()
    {
        return waitFor([&] { return actual() == expected(); }, patience) && showsArea();
    }

    ColorWindow window;
};

} // namespace

class ClickTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void press_showsARing_whenItIsInTheArea()
    {
        constexpr QPoint outside(290, 300);
        for (const auto &[place, button, isShown] : {std::tuple(middle, 1, true),
                                                     {middle, 3, true},
                                                     {middle, 2, false},
                                                     {middle, 4, false},
                                                     {outside, 1, false}}) { // 4 is the wheel
            ClickFixture fixture;
            QVERIFY(fixture.showsArea());
            fixture.input.click(place, static_cast<std::uint8_t>(button));
            if (!isShown) {
                // The server reports presses in order: with the second one's ring comes none.
                const QPoint second = area.topLeft() + QPoint(90, 90);
                fixture.input.click(second);
                QVERIFY(fixture.showsRing(second));
                QCOMPARE(fixture.ringAt(place), 0.0);
            } else {
                QVERIFY(fixture.showsRing(place));
            }
            const QImage screen = required(fixture.client.screenshot(area));
            QCOMPARE(screen.pixel(place == middle ? 200 : 1, 150 - 30), color);
            QVERIFY(fixture.isWholeAgain());
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
        // The press is still the other client's.
        const Reply<xcb_generic_event_t> event{xcb_wait_for_event(grabber.connection())};
        QCOMPARE(event->response_type & 0x7f, XCB_BUTTON_PRESS);
    }

    void rings_fadeOneByOne_andTouchNothingElse()
    {
        ClickFixture fixture;
        const QPoint second = middle + QPoint(100, 0);
        fixture.input.click(middle);
        QVERIFY(waitFor([&] { return fixture.ringAt(middle) > 0 && fixture.ringAt(middle) < 0.8; },
                        patience));
        fixture.input.click(second);
        QVERIFY(fixture.showsRing(second));
        QVERIFY(fixture.ringAt(second) > fixture.ringAt(middle));
        // Nothing beside the rings' own squares is another than on the screen, nothing inside
        // either.
        const QImage seen = fixture.actual();
        QCOMPARE(seen.pixel(middle - area.topLeft()), color);
        QCOMPARE(seen.pixel(middle - area.topLeft() + QPoint(33, 0)), color);
        QCOMPARE(seen.pixel(middle - area.topLeft() - QPoint(0, 34)), color);
        int steps = 0;
        for (double before = 1; before > 0;) {
            const double now = fixture.ringAt(second);
            QVERIFY(now <= before);
            steps += now < before ? 1 : 0;
            before = now;
            QVERIFY(now == 0 || fixture.ringAt(middle) < now);
            QTest::qWait(1); // lets the rings go on
        }
        QVERIFY2(steps >= 5, qPrintable(QString::number(steps)));
        QVERIFY(fixture.isWholeAgain());
    }

    void picture_isWhole_whateverHappensUnderARing()
    {
        ClickFixture fixture;
        fixture.input.click(middle);
        QVERIFY(fixture.showsRing(middle));
        const auto newcomer = required(ColorWindow::show(
            fixture.client, {.rectangle = {middle, QSize(60, 20)}, .color = green}));
        fixture.input.moveTo(middle + QPoint(30, 3));
        QVERIFY(waitFor(
            [&] {
                fixture.input.moveTo(fixture.ringAt(middle) > 0 ? middle - QPoint(28, 0) : middle);
                return fixture.actual() == fixture.expected();
            },
            patience));
        newcomer.setColor(blue);
        QVERIFY(fixture.isWholeAgain());
    }

    void picture_isWhole_afterAStormOfPresses()
    {
        ClickFixture fixture;
        for (int i = 0; i < 200; ++i) {
            fixture.input.click(area.topLeft() + QPoint(i * 37 % 400, i * 53 % 300));
        }
        QVERIFY(waitFor([&] { return fixture.actual() != fixture.expected(); }, patience));
        QVERIFY(fixture.isWholeAgain());
    }
};

QTEST_MAIN(ClickTest)
#include "ClickTest.moc"
