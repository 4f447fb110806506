// SPDX-License-Identifier: MIT
#include "tests/app/WatchTurns.h"
#include "tests/support/Fakes.h"

#include <QTest>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame area{10, 20, 300, 200};
const FakeCaptureService::StartResult failed
    = std::unexpected(CaptureFailure{QStringLiteral("no stream")});

/** Lets everything go on that waits for a request for the content. */
void finishRequests(FakeDesktop &desktop)
{
    desktop.releaseContent();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

/** A session of which the capture runs, or is still being started. */
struct Session : FakeApplication {
    explicit Session(std::optional<FakeCaptureService::StartResult> answer
                     = FakeCaptureService::StartResult())
        : FakeApplication(area)
    {
        capture->answer = answer;
        start();
    }
    void start()
    {
        viewModel->startSharing();
        finishRequests(desktop);
    }
    bool isOpen() const { return viewModel->isSharingWindowOpen(); }
};

} // namespace

class SharingSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void start_opensTheWindowThenCaptures_whenPermitted();
    void start_doesNothing_whenOneIsUnderWay();
    void start_asksForPermission_whenDenied_data();
    void start_asksForPermission_whenDenied();
    void start_removesTheWindowAfterTheFlag_whenTheCaptureFails();
    void start_refusesAreas_data();
    void start_refusesAreas();
    void start_takesTheAreaOfTheMoment_whenItChanges();
    void watch_waits_whileAnAlertIsUp();
    void session_goesOn_whileItsWindowIsShown();
    void watch_endsTheSession_whenTheWindowIsGone_data();
    void watch_endsTheSession_whenTheWindowIsGone();
    void captureEnd_endsTheSessionWithoutASecondStop();
    void idle_ignoresStopAndCaptureEnd();
    void viewModel_canGo_whileARequestIsInFlight_data();
    void viewModel_canGo_whileARequestIsInFlight();
    void viewModel_canGo_whileAStartIsInFlight_data();
    void viewModel_canGo_whileAStartIsInFlight();
};

void SharingSessionTest::start_opensTheWindowThenCaptures_whenPermitted()
{
    FakeApplication app(area);
    int told = 0;
    connect(app.viewModel.get(), &MainViewModel::objectWillChange, [&] {
        ++told;
        QVERIFY(!app.viewModel->isSharingWindowOpen());
        QCOMPARE(app.coordinator->windowsShown, 0);
    });
    app.desktop.holdContent();
    app.viewModel->startSharing();
    QTRY_COMPARE(app.desktop.contentRequests.load(), 1);
    QVERIFY(!app.viewModel->isSharingWindowOpen());
    QCOMPARE(app.coordinator->windowsShown, 0);

    finishRequests(app.desktop);
    QVERIFY(app.viewModel->isSharingWindowOpen());
    QCOMPARE(told, 1);
    QCOMPARE(app.coordinator->windowsShown, 1);
    QCOMPARE(app.coordinator->windowFrame, area);
    QCOMPARE(app.capture->starts.size(), 1U);
    QCOMPARE(app.capture->starts[0]->frame, area);
    QCOMPARE(app.capture->starts[0]->window, app.coordinator->window);
    QVERIFY(app.alerts.shown.empty());
}

void SharingSessionTest::start_doesNothing_whenOneIsUnderWay()
{
    FakeApplication app(area);
    app.desktop.holdContent();
    app.viewModel->startSharing();
    app.viewModel->startSharing();
    finishRequests(app.desktop);
    app.viewModel->startSharing(); // the capture's start is in flight
    finishRequests(app.desktop);
    app.capture->starts.at(0)->complete({});
    app.viewModel->startSharing(); // it runs
    finishRequests(app.desktop);
    QCOMPARE(app.desktop.contentRequests.load(), 1);
    QCOMPARE(app.coordinator->windowsShown, 1);
    QCOMPARE(app.capture->starts.size(), 1U);
}

void SharingSessionTest::start_asksForPermission_whenDenied_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("settingsOpened");
    QTest::newRow("Open System Settings") << 0 << 1;
    QTest::newRow("Cancel") << 1 << 0;
    QTest::newRow("closed") << -1 << 0;
}

void SharingSessionTest::start_asksForPermission_whenDenied()
{
    QFETCH(int, answer);
    QFETCH(int, settingsOpened);
    FakeApplication app(area);
    int told = 0;
    connect(app.viewModel.get(), &MainViewModel::objectWillChange, [&] { ++told; });
    app.desktop.denyContent();
    app.alerts.answer = answer;
    app.viewModel->startSharing();
    finishRequests(app.desktop);

    QCOMPARE(app.alerts.shown.size(), 1U);
    const Alert &alert = app.alerts.shown[0];
    QCOMPARE(alert.messageText, QStringLiteral("Screen Recording Permission Required"));
    QCOMPARE(alert.informativeText,
             QStringLiteral("Please grant Screen Recording permission in System Settings > "
                            "Privacy & Security > Screen Recording"));
    QCOMPARE(alert.style, Alert::Style::Warning);
    QCOMPARE(alert.buttons,
             QStringList({QStringLiteral("Open System Settings"), QStringLiteral("Cancel")}));
    QCOMPARE(app.desktop.privacySettingsOpened, settingsOpened);
    QCOMPARE(app.coordinator->windowsShown, 0);
    QCOMPARE(told, 0);

    app.desktop.content = ShareableContent();
    app.viewModel->startSharing();
    finishRequests(app.desktop);
    QVERIFY(app.viewModel->isSharingWindowOpen());
}

void SharingSessionTest::start_removesTheWindowAfterTheFlag_whenTheCaptureFails()
{
    Session session(std::nullopt);
    bool openWhileUp = false;
    bool openWhenClosing = true;
    session.alerts.whileUp
        = [&] { openWhileUp = session.isOpen() && session.coordinator->visible; };
    session.coordinator->whenClosing = [&] { openWhenClosing = session.isOpen(); };
    session.capture->starts.at(0)->complete(failed);

    QCOMPARE(session.alerts.shown.size(), 1U);
    const Alert &alert = session.alerts.shown[0];
    QCOMPARE(alert.messageText, QStringLiteral("Screen Capture"));
    QCOMPARE(alert.informativeText, QStringLiteral("Failed to start capture: no stream"));
    QCOMPARE(alert.style, Alert::Style::Warning);
    QCOMPARE(alert.buttons, QStringList(QStringLiteral("OK")));
    QVERIFY(openWhileUp);
    QVERIFY(!openWhenClosing);
    QVERIFY(!session.isOpen());
    QCOMPARE(session.coordinator->windowsClosed, 1);
    QCOMPARE(session.capture->stops, 0);
}

void SharingSessionTest::start_refusesAreas_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<CaptureFrame>("frame");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("reason");
    const auto row
        = [](const char *name, CaptureFrame frame, const char *reason, double scale = 1) {
              QTest::newRow(name) << frame << scale << QString::fromLatin1(reason);
          };
    row("width NaN", {0, 0, nan, 200}, "finite");
    row("height infinite", {0, 0, 300, infinity}, "finite");
    row("width minus infinite", {0, 0, -infinity, 200}, "finite");
    row("x NaN", {nan, 0, 300, 200}, "position");
    row("y NaN", {0, nan, 300, 200}, "position");
    row("width zero", {0, 0, 0, 200}, "empty");
    row("height rounds to zero", {0, 0, 300, 0.49}, "empty");
    row("height rounds to zero, negative", {0, 0, 300, -0.49}, "empty");
    row("width 32768", {0, 0, 32768, 200}, "too large");
    row("height rounds to 32768", {0, 0, 300, 32767.5}, "too large");
    row("height -32768", {0, 0, 300, -32768}, "too large");
    row("width 16384, scale 2", {0, 0, 16384, 200}, "too large", 2);
    row("width huge", {0, 0, 1e300, 200}, "too large");

    row("largest", {0, 0, 32767, 32767.4}, "");
    row("largest, scale 2", {0, 0, 16383, 16383.5}, "", 2);
    row("smallest", {0, 0, 1, 0.5}, "");
    row("smallest, scale 2", {0, 0, 0.25, 0.5}, "", 2);
    row("negative size", {0, 0, -300, -200}, "");
    row("infinitely far", {infinity, -infinity, 300, 200}, "");
}

void SharingSessionTest::start_refusesAreas()
{
    QFETCH(CaptureFrame, frame);
    QFETCH(double, scale);
    QFETCH(QString, reason);
    FakeApplication app(frame);
    app.desktop.scale = scale;
    app.viewModel->startSharing();
    finishRequests(app.desktop);
    const bool refused = !reason.isEmpty();
    QCOMPARE(app.viewModel->isSharingWindowOpen(), !refused);
    QCOMPARE(app.coordinator->windowsShown, refused ? 0 : 1);
    QCOMPARE(app.capture->starts.size(), refused ? 0U : 1U);
    QCOMPARE(app.alerts.shown.size(), refused ? 1U : 0U);
    if (refused) {
        const QString text = app.alerts.shown[0].informativeText;
        QVERIFY2(text.startsWith(QStringLiteral("Failed to start capture: ")), qPrintable(text));
        QVERIFY2(text.contains(reason), qPrintable(text));
    }
}

void SharingSessionTest::start_takesTheAreaOfTheMoment_whenItChanges()
{
    FakeApplication app(CaptureFrame{1, 1, 1, 1});
    app.desktop.holdContent();
    app.viewModel->startSharing();
    app.viewModel->frameSelected(area);
    finishRequests(app.desktop);
    app.viewModel->updateFrame(QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("640"),
                               QStringLiteral("480"));
    app.capture->starts.at(0)->complete({});

    QCOMPARE(app.repository->stored, (CaptureFrame{0, 0, 640, 480}));
    QCOMPARE(app.coordinator->windowFrame, area);
    QCOMPARE(app.capture->starts[0]->frame, area);
    QCOMPARE(app.coordinator->windowsShown, 1);
    QCOMPARE(app.capture->stops, 0);

    app.capture->onCaptureEnded();
    app.viewModel->startSharing();
    finishRequests(app.desktop);
    QCOMPARE(app.coordinator->windowFrame, (CaptureFrame{0, 0, 640, 480}));
    QCOMPARE(app.capture->starts.at(1)->frame, (CaptureFrame{0, 0, 640, 480}));
}

void SharingSessionTest::watch_waits_whileAnAlertIsUp()
{
    WatchTurns watch;
    Session session(std::nullopt);
    session.alerts.whileUp = [&] {
        session.coordinator->visible = false;
        QVERIFY(watch.pass());
        QVERIFY(session.isOpen());
    };
    session.capture->starts.at(0)->complete(failed);
    QVERIFY(!session.isOpen());
    QCOMPARE(session.coordinator->windowsClosed, 1);
    QVERIFY(watch.pass());
    QCOMPARE(session.capture->stops, 0);
}

void SharingSessionTest::session_goesOn_whileItsWindowIsShown()
{
    WatchTurns watch;
    Session session;
    QVERIFY(watch.pass());
    QVERIFY(session.isOpen());
    QCOMPARE(session.capture->stops, 0);
    QCOMPARE(session.coordinator->windowsClosed, 0);
}

void SharingSessionTest::watch_endsTheSession_whenTheWindowIsGone_data()
{
    QTest::addColumn<bool>("inFlight");
    QTest::addColumn<bool>("stopped"); // else somebody asked the window to close
    QTest::newRow("stopped") << false << true;
    QTest::newRow("stopped, start in flight") << true << true;
    QTest::newRow("closed") << false << false;
    QTest::newRow("closed, start in flight") << true << false;
}

void SharingSessionTest::watch_endsTheSession_whenTheWindowIsGone()
{
    QFETCH(bool, inFlight);
    QFETCH(bool, stopped);
    Session session(inFlight ? std::nullopt : std::optional(FakeCaptureService::StartResult()));
    int stopsWhenTold = -1;
    connect(session.viewModel.get(), &MainViewModel::objectWillChange,
            [&] { stopsWhenTold = session.capture->stops; });
    stopped ? session.viewModel->stopSharing() : void(session.coordinator->visible = false);
    QCOMPARE(session.coordinator->windowsClosed, stopped ? 1 : 0);
    QVERIFY(session.isOpen());
    QCOMPARE(session.capture->stops, 0);

    QTRY_VERIFY(!session.isOpen());
    QCOMPARE(session.capture->stops, 1);
    QCOMPARE(stopsWhenTold, 1);
    session.capture->starts.at(0)->complete({}); // as a start ends that was stopped
    QVERIFY(!session.isOpen());

    session.start();
    QVERIFY(session.isOpen());
    QCOMPARE(session.coordinator->windowsShown, 2);
}

void SharingSessionTest::captureEnd_endsTheSessionWithoutASecondStop()
{
    WatchTurns watch;
    Session session;
    bool openWhenClosing = false;
    session.coordinator->whenClosing = [&] { openWhenClosing = session.isOpen(); };
    session.capture->onCaptureEnded();
    QVERIFY(openWhenClosing);
    QVERIFY(!session.isOpen());
    QVERIFY(watch.pass());
    QCOMPARE(session.coordinator->windowsClosed, 1);
    QCOMPARE(session.capture->stops, 0);
}

void SharingSessionTest::idle_ignoresStopAndCaptureEnd()
{
    WatchTurns watch;
    const FakeApplication app(area);
    int told = 0;
    connect(app.viewModel.get(), &MainViewModel::objectWillChange, [&] { ++told; });
    app.viewModel->stopSharing();
    app.capture->onCaptureEnded();
    QVERIFY(watch.pass());
    QCOMPARE(told, 0);
    QCOMPARE(app.coordinator->windowsClosed, 0);
    QCOMPARE(app.capture->stops, 0);
}

void SharingSessionTest::viewModel_canGo_whileARequestIsInFlight_data()
{
    QTest::addColumn<bool>("permitted");
    QTest::newRow("permitted") << true;
    QTest::newRow("denied") << false;
}

void SharingSessionTest::viewModel_canGo_whileARequestIsInFlight()
{
    QFETCH(bool, permitted);
    FakeApplication app(area);
    if (!permitted) {
        app.desktop.denyContent();
    }
    app.desktop.holdContent();
    app.viewModel->startSharing();
    app.viewModel.reset();
    finishRequests(app.desktop);
    QCOMPARE(app.desktop.contentRequests.load(), 1);
    QVERIFY(app.alerts.shown.empty());
}

void SharingSessionTest::viewModel_canGo_whileAStartIsInFlight_data()
{
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("succeeds") << true;
    QTest::newRow("fails") << false;
}

void SharingSessionTest::viewModel_canGo_whileAStartIsInFlight()
{
    QFETCH(bool, succeeds);
    Session session(std::nullopt);
    const auto start = session.capture->starts.at(0);
    const auto ended = session.capture->onCaptureEnded;
    session.viewModel.reset();
    QVERIFY(start->isInFlight());
    start->complete(succeeds ? FakeCaptureService::StartResult() : failed);
    ended();
    QVERIFY(session.alerts.shown.empty());
}

QTEST_GUILESS_MAIN(SharingSessionTest)
#include "SharingSessionTest.moc"
