// SPDX-License-Identifier: MIT
#include "tests/desktop/CaptureFixture.h"

#include "capture/SharingWindow.h"
#include "rig/WaitFor.h"

#include <QCoroTask>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect left(0, 0, 640, 1024);
constexpr QRect right(640, 0, 640, 1024);
constexpr QRect areaOnTheLeft(100, 100, 300, 200);
constexpr QRect areaOnTheRight(700, 100, 300, 200);

/** A screen of two monitors, side by side, each 640 pixels wide; LEFT is the first. */
struct TwoMonitors : CaptureFixture {
    TwoMonitors()
    {
        server.setMonitor(QStringLiteral("LEFT"), left, QStringLiteral("screen"));
        server.setMonitor(QStringLiteral("RIGHT"), right, QStringLiteral("none"));
    }

    void removeMonitor(const QString &name)
    {
        server.run(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), name});
    }
};

} // namespace

class CaptureLifeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_isTheArea_onEitherDisplay_whicheverIsPrimary()
    {
        TwoMonitors fixture;
        const auto window = required(
            ColorWindow::show(fixture.client, {.rectangle = {500, 50, 300, 100}, .color = green}));
        for (const QRect area : {areaOnTheLeft, areaOnTheRight, QRect(600, 80, 100, 100)}) {
            fixture.share(area);
            QVERIFY(fixture.showsArea());
            fixture.stop();
        }
        const auto firstDisplay = [&] { return fixture.backend.displays->displays().at(0).name; };
        QCOMPARE(firstDisplay(), QStringLiteral("LEFT"));
        fixture.removeMonitor(QStringLiteral("RIGHT"));
        fixture.server.setMonitor(QStringLiteral("*RIGHT"), right, QStringLiteral("none"));
        QCOMPARE(firstDisplay(), QStringLiteral("RIGHT"));
        QCOMPARE(fixture.backend.displays->mainDisplay()->frame(), (Rect{0, 0, 640, 1024}));
    }

    void capture_goesOnWithItsPoints_untilNoDisplayShowsThem()
    {
        struct Row {
            QRect area;
            QString monitor; ///< that goes, or becomes another
            QRect becomes{};
            bool ends = false;
        };
        const auto first = QStringLiteral("LEFT");
        const auto second = QStringLiteral("RIGHT");
        for (const auto &[area, monitor, becomes, ends] :
             {Row{areaOnTheLeft, first, {0, 0, 600, 900}},
              Row{areaOnTheRight, first, {0, 0, 600, 1000}},
              Row{areaOnTheRight, second, {640, 200, 640, 800}},
              Row{areaOnTheRight, second, {}, true}}) {
            TwoMonitors fixture;
            fixture.share(area);
            QVERIFY(fixture.showsArea());
            fixture.removeMonitor(monitor);
            if (!becomes.isNull()) {
                const bool isPrimary = monitor == first;
                fixture.server.setMonitor(isPrimary ? u'*' + monitor : monitor, becomes,
                                          isPrimary ? QStringLiteral("screen")
                                                    : QStringLiteral("none"));
            }
            QRect now = area;
            if (ends) {
                QVERIFY(waitFor([&] { return fixture.captureEnds > 0; }, patience));
                QVERIFY(waitFor([] { return captureThreads() == 0; }, patience));
                fixture.coordinator->closeSharingWindow();
                fixture.share(now = areaOnTheLeft);
            } else if (monitor == first) {
                now.translate(0, becomes.height() - left.height());
                fixture.follow(now);
            }
            const auto window
                = required(ColorWindow::show(fixture.client, {.rectangle = now, .color = red}));
            QVERIFY(fixture.showsArea());
            QVERIFY(waitFor([] { return captureThreads() == 1; }, patience));
            QCOMPARE(fixture.captureEnds, ends ? 1 : 0);
        }
    }

    void start_fails_whenTheXServerIsGone()
    {
        CaptureFixture fixture;
        fixture.server.kill();
        const auto window = fixture.coordinator->showSharingWindow(frameOf(areaOnTheLeft, 1024));
        QVERIFY(!fixture.coordinator->isSharingWindowVisible());
        const auto result = QCoro::waitFor(fixture.service->startCapture({}, window));
        QVERIFY(!result);
        QVERIFY(!result.error().text.isEmpty());
        QVERIFY(!fixture.backend.displays->mainDisplay());
    }
};

QTEST_MAIN(CaptureLifeTest)
#include "CaptureLifeTest.moc"
