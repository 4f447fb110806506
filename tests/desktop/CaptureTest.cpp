// SPDX-License-Identifier: MIT
#include "capture/SharingWindow.h"
#include "rig/WaitFor.h"
#include "tests/desktop/CaptureFixture.h"

#include <QCoroTask>
#include <QTest>

#include <algorithm>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect area(200, 150, 320, 240);

} // namespace

class CaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void window_isListedByPickersAndUnseen_untilItsSessionIsStopped()
    {
        CaptureFixture fixture;
        fixture.share(area); // fails unless pickers list the window
        QVERIFY(waitFor([] { return captureThreads() == 1; }, patience));
        const auto window = fixture.outputWindow();
        QCOMPARE(numberOf(fixture.client, window, "_NET_WM_WINDOW_TYPE"),
                 fixture.client.atom("_NET_WM_WINDOW_TYPE_NORMAL"));
        QVERIFY(attributesOf(fixture.client, window)->override_redirect);
        QCOMPARE(geometryOf(fixture.client, window), QRect(QPoint(-10000, -10000), area.size()));
        fixture.stop();
        fixture.stop();
        QVERIFY(waitFor([] { return captureThreads() == 0; }, patience));
        QVERIFY(waitFor([&] { return !isViewable(fixture.client, window); }, patience));
        QCOMPARE(fixture.captureEnds, 0);
    }

    void picture_isTheArea_whereverItLies()
    {
        for (const QRect place :
             {area, QRect(0, 0, 1280, 1024), QRect(-50, -40, 200, 200), QRect(1200, 1000, 200, 200),
              QRect(1300, 100, 200, 200), QRect(640, 512, 1, 1), QRect(-100, -100, 1600, 1300)}) {
            CaptureFixture fixture;
            const auto a = required(
                ColorWindow::show(fixture.client, {.rectangle = {0, 0, 640, 512}, .color = red}));
            const auto b = required(ColorWindow::show(
                fixture.client, {.rectangle = {600, 500, 680, 524}, .color = green}));
            // The pointer over an edge of the picture is cut off there.
            fixture.input.moveTo(place.topLeft() + QPoint(place.width() - 3, place.height() / 2));
            fixture.share(place);
            QVERIFY(fixture.showsArea());
        }
    }

    void picture_followsTheScreen_whenAPartChangesOrIsLost()
    {
        CaptureFixture fixture;
        fixture.share(area);
        const auto window = required(ColorWindow::show(
            fixture.client, {.rectangle = area.adjusted(20, 20, -100, -100), .color = red}));
        QVERIFY(fixture.showsArea());
        window.setColor(blue);
        QVERIFY(fixture.showsArea());
        window.setGeometry(area.adjusted(150, 100, 40, 40));
        QVERIFY(fixture.showsArea());
        // Many small rectangles at once, more than are copied one by one.
        for (int i = 0; i < 400; ++i) {
            fixture.client.fill(fixture.client.root(),
                                {area.x() + (i * 37) % 310, area.y() + (i * 53) % 230, 3, 3},
                                green);
        }
        QVERIFY(fixture.showsArea());
        xcb_clear_area(fixture.client.connection(), 1, fixture.outputWindow(), 10, 10, 100, 100);
        fixture.client.sync();
        QVERIFY(fixture.showsArea());
    }

    void picture_hasThePointer_whereverItGoesAndHoweverItLooks()
    {
        CaptureFixture fixture;
        fixture.input.moveTo({0, 0});
        fixture.share(area);
        QVERIFY(fixture.showsArea());
        const auto without = fixture.actual();
        for (const QPoint offset : {QPoint(50, 50), QPoint(55, 52), QPoint(0, 0), QPoint(319, 239),
                                    QPoint(160, -3), QPoint(-2, 120), QPoint(100, 100)}) {
            fixture.input.moveTo(area.topLeft() + offset);
            QVERIFY(fixture.showsArea());
        }
        QVERIFY(fixture.actual() != without);
        // Changes under a still pointer are visible around and through it, and so is a new look.
        const auto window = required(ColorWindow::show(
            fixture.client, {.rectangle = area.adjusted(90, 90, 0, 0), .color = red}));
        QVERIFY(fixture.showsArea());
        const QImage arrow = fixture.actual();
        fixture.setTextCursor(window.id());
        QVERIFY(fixture.showsArea());
        QVERIFY(fixture.actual() != arrow);
        fixture.input.moveTo({0, 0});
        QVERIFY(fixture.showsArea());
    }

    void frames_areNotMade_whenNothingInTheAreaChanges()
    {
        CaptureFixture fixture;
        fixture.input.moveTo({0, 0});
        fixture.share(area);
        QVERIFY(fixture.showsArea());
        auto watch
            = required(DamageWatch::open(fixture.server.displayName(), fixture.outputWindow()));
        const auto outside = required(
            ColorWindow::show(fixture.client, {.rectangle = {600, 600, 100, 100}, .color = red}));
        const auto inside
            = required(ColorWindow::show(fixture.client, {.rectangle = area, .color = green}));
        QVERIFY(fixture.showsArea());
        while (watch.take()) { }
        watch.resetCount();
        for (int i = 0; i < 20; ++i) {
            outside.setColor(i % 2 != 0 ? red : blue);
            fixture.input.moveTo({600 + i, 700});
        }
        // The next change in the area comes after all of these, and alone.
        inside.setColor(blue);
        QVERIFY(fixture.showsArea());
        while (watch.take()) { }
        QCOMPARE(watch.count(), 1);
    }

    void changes_comeAgain_whenTheirFrameWasReturned()
    {
        const QRegion one(QRect(area.topLeft() + QPoint(10, 10), QSize(20, 20)));
        const QRegion aside(area.translated(300, 200));
        // Without a change, only the pointer left.
        for (const auto &[returned, comes] :
             {std::pair(one, one), {QRegion(), QRegion(area)}, {aside, aside & area}}) {
            CaptureFixture fixture;
            QObject mainThread;
            std::vector<QRegion> changes;
            const auto stream = fixture.backend.screen->makeCaptureStream(
                {.display = *fixture.backend.displays->mainDisplay()},
                streamConfiguration(frameOf(area, 1024), 1024));
            const auto keep = [&](const SampleBuffer &sample) {
                QMetaObject::invokeMethod(
                    &mainThread, [&changes, region = sample.changed] { changes.push_back(region); },
                    Qt::QueuedConnection);
            };
            QVERIFY(QCoro::waitFor(
                stream->startCapture({.didOutputSampleBuffer = keep, .didStopWithError = {}})));
            QVERIFY(waitFor([&] { return !changes.empty(); }, patience));
            QCOMPARE(changes.front(), QRegion(area));

            // The stream's first look at the screen may fall together with a frame that is
            // returned.
            SampleBuffer sample;
            sample.source = area;
            sample.changed = returned;
            changes.clear();
            const auto cameAgain = [&, &comes = comes] {
                stream->returnSampleBuffer(sample);
                return std::ranges::find(changes, comes) != changes.end();
            };
            QVERIFY(waitFor(cameAgain, patience));
        }
    }

    void content_isRefused_whenAnExtensionIsMissing()
    {
        for (const char *name : {"DAMAGE", "Composite", "XFIXES", "RENDER", "RANDR"}) {
            const QString extension = QString::fromLatin1(name);
            const auto server = required(
                XvfbServer::start({.arguments = {QStringLiteral("-extension"), extension}}));
            qputenv("DISPLAY", server.displayName().toLocal8Bit());
            const auto content
                = QCoro::waitFor(x11::makeBackend(false).screen->shareableContent({}));
            QVERIFY2(!content, name);
            QVERIFY2(content.error().text.contains(extension), qPrintable(content.error().text));
        }
    }
};

QTEST_MAIN(CaptureTest)
#include "CaptureTest.moc"
