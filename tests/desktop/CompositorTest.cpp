// SPDX-License-Identifier: MIT
#include "tests/desktop/CaptureFixture.h"
#include "tests/support/WaitFor.h"
#include "tests/support/WindowManager.h"

#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

using Start = Result<ChildProcess> (*)(const XClient &, const ChildProcess::Options &);

constexpr QRect area(200, 150, 320, 240);

xcb_window_t ownerOf(const CaptureFixture &fixture, const QByteArray &selection)
{
    const auto cookie
        = xcb_get_selection_owner(fixture.client.connection(), fixture.client.atom(selection));
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(fixture.client.connection(), cookie, nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_NONE);
}

} // namespace

Q_DECLARE_METATYPE(Start)

class CompositorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_isNeverStale_whenAManagerComesAndGoes_data();
    void picture_isNeverStale_whenAManagerComesAndGoes();
};

void CompositorTest::picture_isNeverStale_whenAManagerComesAndGoes_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<Start>("start");
    QTest::addColumn<QByteArray>("selection"); ///< that it owns while it runs
    QTest::newRow("picom") << QStringLiteral("picom") << Start(startCompositor)
                           << QByteArray("_NET_WM_CM_S0");
    QTest::newRow("openbox") << QStringLiteral("openbox") << Start(startWindowManager)
                             << QByteArray("WM_S0");
}

void CompositorTest::picture_isNeverStale_whenAManagerComesAndGoes()
{
    QFETCH(QString, program);
    QFETCH(Start, start);
    QFETCH(QByteArray, selection);
    CaptureFixture fixture;
    const auto window = required(ColorWindow::show(
        fixture.client, {.rectangle = area.adjusted(40, 40, 60, -60), .color = red}));
    fixture.share(area);
    QVERIFY(fixture.showsArea());
    for (int round = 0; round < 2; ++round) {
        auto manager = required(start(
            fixture.client, {.program = program, .environment = fixture.server.environment()}));
        QVERIFY(fixture.showsArea());
        window.setColor(green);
        QVERIFY(fixture.showsArea());
        round == 0 ? manager.terminate() : manager.kill();
        QVERIFY(waitFor([&] { return ownerOf(fixture, selection) == XCB_NONE; }, patience));
        QVERIFY(fixture.showsArea());
        window.setColor(blue);
        QVERIFY(fixture.showsArea());
    }
    QCOMPARE(fixture.captureEnds, 0);
    QVERIFY(fixture.coordinator->isSharingWindowVisible());
}

QTEST_MAIN(CompositorTest)
#include "CompositorTest.moc"
