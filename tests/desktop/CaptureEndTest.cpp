// SPDX-License-Identifier: MIT
#include "tests/desktop/CaptureFixture.h"

#include "capture/SharingWindow.h"
#include "tests/support/WaitFor.h"

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

QString monitorSpecification(QRect r)
{
    return QStringLiteral("%1/%1x%2/%2+%3+%4").arg(r.width()).arg(r.height()).arg(r.x()).arg(r.y());
}

/** A screen of two monitors, side by side, each 640 pixels wide; LEFT is the first. */
struct TwoMonitors : CaptureFixture {
    TwoMonitors()
    {
        setMonitor(QStringLiteral("LEFT"), left, QStringLiteral("screen"));
        setMonitor(QStringLiteral("RIGHT"), right, QStringLiteral("none"));
    }

    void setMonitor(const QString &name, QRect rectangle, const QString &output)
    {
        run(QStringLiteral("xrandr"),
            {QStringLiteral("--setmonitor"), name, monitorSpecification(rectangle), output});
    }

    void removeMonitor(const QString &name)
    {
        run(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), name});
    }
};

} // namespace

class CaptureEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void displays_beginWithThePrimary();
    void picture_isTheArea_onEitherDisplay();
    void capture_endsOnce_whenTheGeometryUnderItChanges_data();
    void capture_endsOnce_whenTheGeometryUnderItChanges();
    void capture_goesOn_whenTheOtherDisplayChanges();
    void capture_goesOn_afterItEndedByItself_whenStartedAgain();
    void window_isHidden_whenAskedToClose();
    void window_isHidden_whenDestroyedByAnotherClient();
    void start_fails_whenTheXServerIsGone();
};

void CaptureEndTest::displays_beginWithThePrimary()
{
    TwoMonitors fixture;
    const auto names = [&] {
        QStringList list;
        const auto content = fixture.desktop->shareableContent().value();
        for (const auto &display : content.displays) {
            list.append(display.name);
        }
        return list;
    };
    QCOMPARE(names(), QStringList({QStringLiteral("LEFT"), QStringLiteral("RIGHT")}));
    fixture.removeMonitor(QStringLiteral("RIGHT"));
    fixture.setMonitor(QStringLiteral("*RIGHT"), right, QStringLiteral("none"));
    QCOMPARE(names(), QStringList({QStringLiteral("RIGHT"), QStringLiteral("LEFT")}));
    QCOMPARE(fixture.desktop->mainScreenFrame(), (Rect{0, 0, 640, 1024}));
}

void CaptureEndTest::picture_isTheArea_onEitherDisplay()
{
    TwoMonitors fixture;
    const auto window = required(
        ColorWindow::show(fixture.client, {.rectangle = {500, 50, 300, 100}, .color = green}));
    for (const QRect area : {areaOnTheLeft, areaOnTheRight, QRect(600, 80, 100, 100)}) {
        fixture.share(area);
        QVERIFY(fixture.showsArea());
        fixture.stop();
    }
}

void CaptureEndTest::capture_endsOnce_whenTheGeometryUnderItChanges_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QString>("monitor");
    QTest::addColumn<QRect>("becomes");
    QTest::newRow("captured display is gone") << areaOnTheLeft << QStringLiteral("LEFT") << QRect();
    QTest::newRow("captured display is smaller")
        << areaOnTheLeft << QStringLiteral("LEFT") << QRect(0, 0, 600, 1024);
    QTest::newRow("display under the area is gone")
        << areaOnTheRight << QStringLiteral("RIGHT") << QRect();
    QTest::newRow("display under the area is moved")
        << areaOnTheRight << QStringLiteral("RIGHT") << QRect(640, 200, 640, 800);
    QTest::newRow("captured display is gone, the area is elsewhere")
        << areaOnTheRight << QStringLiteral("LEFT") << QRect();
}

void CaptureEndTest::capture_endsOnce_whenTheGeometryUnderItChanges()
{
    QFETCH(QRect, area);
    QFETCH(QString, monitor);
    QFETCH(QRect, becomes);
    TwoMonitors fixture;
    fixture.share(area);
    QVERIFY(fixture.showsArea());
    QCOMPARE(fixture.captureEnds, 0);
    fixture.removeMonitor(monitor);
    if (!becomes.isNull()) {
        fixture.setMonitor(monitor, becomes, QStringLiteral("none"));
    }
    QVERIFY(waitFor([&] { return fixture.captureEnds > 0; }, patience));
    QVERIFY(waitFor([] { return captureThreads() == 0; }, patience));
    QCOMPARE(fixture.captureEnds, 1);
}

void CaptureEndTest::capture_goesOn_whenTheOtherDisplayChanges()
{
    TwoMonitors fixture;
    fixture.share(areaOnTheLeft);
    QVERIFY(fixture.showsArea());
    fixture.removeMonitor(QStringLiteral("RIGHT"));
    fixture.setMonitor(QStringLiteral("RIGHT"), {640, 100, 640, 900}, QStringLiteral("none"));
    const auto window
        = required(ColorWindow::show(fixture.client, {.rectangle = areaOnTheLeft, .color = red}));
    QVERIFY(fixture.showsArea());
    QCOMPARE(fixture.captureEnds, 0);
}

void CaptureEndTest::capture_goesOn_afterItEndedByItself_whenStartedAgain()
{
    TwoMonitors fixture;
    fixture.share(areaOnTheRight);
    fixture.removeMonitor(QStringLiteral("RIGHT"));
    QVERIFY(waitFor([&] { return fixture.captureEnds == 1; }, patience));
    fixture.coordinator->closeSharingWindow();
    fixture.share(areaOnTheLeft);
    const auto window
        = required(ColorWindow::show(fixture.client, {.rectangle = areaOnTheLeft, .color = red}));
    QVERIFY(fixture.showsArea());
    QVERIFY(waitFor([] { return captureThreads() == 1; }, patience));
}

void CaptureEndTest::window_isHidden_whenAskedToClose()
{
    CaptureFixture fixture;
    fixture.share(areaOnTheLeft);
    QVERIFY(fixture.coordinator->isSharingWindowVisible());
    askToClose(fixture.client, fixture.outputWindow());
    QVERIFY(waitFor([&] { return !fixture.coordinator->isSharingWindowVisible(); }, patience));
    QVERIFY(waitFor([&] { return !isViewable(fixture.client, fixture.outputWindow()); }, patience));
    QVERIFY(geometryOf(fixture.client, fixture.outputWindow()).has_value());
}

void CaptureEndTest::window_isHidden_whenDestroyedByAnotherClient()
{
    CaptureFixture fixture;
    fixture.share(areaOnTheLeft);
    xcb_destroy_window(fixture.client.connection(), fixture.outputWindow());
    fixture.client.sync();
    QVERIFY(waitFor([&] { return !fixture.coordinator->isSharingWindowVisible(); }, patience));
    // Frames still come and must do no harm.
    const auto window
        = required(ColorWindow::show(fixture.client, {.rectangle = areaOnTheLeft, .color = red}));
    fixture.input.moveTo(areaOnTheLeft.center());
    fixture.stop();
    fixture.share(areaOnTheLeft);
    QVERIFY(fixture.showsArea());
}

void CaptureEndTest::start_fails_whenTheXServerIsGone()
{
    CaptureFixture fixture;
    fixture.server.kill();
    const auto window = fixture.coordinator->showSharingWindow(frameOf(areaOnTheLeft, 1024));
    QVERIFY(!fixture.coordinator->isSharingWindowVisible());
    const auto result = QCoro::waitFor(fixture.service->startCapture({}, window));
    QVERIFY(!result);
    QVERIFY(!result.error().description.isEmpty());
    QVERIFY(!fixture.desktop->mainScreenFrame());
}

QTEST_MAIN(CaptureEndTest)
#include "CaptureEndTest.moc"
