// SPDX-License-Identifier: MIT
#include "capture/ScreenCaptureService.h"

#include "capture/SharingWindow.h"
#include "tests/support/Fakes.h"

#include <QCoroTask>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame frame{.x = 10, .y = 20, .width = 100, .height = 50};

/** What the services did to the platform. */
struct Log {
    std::vector<SampleBuffer> shown;
    std::vector<SampleBuffer> returned;
    int layers = 0;
    bool layerIsReady = true;
    std::atomic<int> running = 0; ///< streams
    CaptureStream::Handlers handlers; ///< of the latest stream
    std::function<void(QPoint)> pressed; ///< while there is a monitor
    std::vector<std::vector<Highlight>> highlights;
    StreamConfiguration configuration;
};

class StubStream : public CaptureStream
{
public:
    StubStream(Log &log, QSemaphore &permits, std::expected<void, Error> answer)
        : log_(log)
        , permits_(permits)
        , answer_(std::move(answer))
    {
    }
    ~StubStream() override { stopCapture(); }

    std::expected<void, Error> startCapture(Handlers handlers) override
    {
        permits_.acquire();
        if (answer_) {
            log_.handlers = std::move(handlers);
            isRunning_ = true;
            ++log_.running;
        }
        return answer_;
    }
    void stopCapture() override { log_.running -= std::exchange(isRunning_, false) ? 1 : 0; }
    void returnSampleBuffer(const SampleBuffer &sample) override
    {
        log_.returned.push_back(sample);
    }
    void invalidate() override { }

private:
    Log &log_;
    QSemaphore &permits_;
    const std::expected<void, Error> answer_;
    bool isRunning_ = false;
};

class StubLayer : public DisplayLayer
{
public:
    explicit StubLayer(Log &log)
        : log_(log)
    {
        ++log.layers;
    }
    ~StubLayer() override { --log_.layers; }
    bool isReadyForMoreMediaData() override { return log_.layerIsReady; }
    void enqueueSampleBuffer(const SampleBuffer &sample) override { log_.shown.push_back(sample); }
    bool setHighlights(const std::vector<Highlight> &highlights) override
    {
        log_.highlights.push_back(highlights);
        return log_.layerIsReady;
    }

private:
    Log &log_;
};

struct StubMonitor : PressMonitor {
    StubMonitor(Log &owner, std::function<void(QPoint)> pressed)
        : log(owner)
    {
        log.pressed = std::move(pressed);
    }
    ~StubMonitor() override { log.pressed = {}; }

    Log &log;
};

class StubWindow : public OffscreenWindow
{
public:
    std::uint32_t id() const override { return 1; }
    QSize size() const override { return {100, 50}; }
    bool isVisible() const override { return isVisible_; }
    void orderFront() override { isVisible_ = true; }
    void orderOut() override { isVisible_ = false; }
    void setFrameOrigin(QPoint) override { }

private:
    bool isVisible_ = false;
};

class CaptureDesktop : public FakeDesktop
{
public:
    CaptureDesktop()
    {
        content->displays = {{.name = QStringLiteral("first"), .pixels = {100, 0, 1440, 900}}};
    }

    Log log;
    QSemaphore startPermits{1000}; ///< a start waits for one
    std::expected<void, Error> startAnswer;

    std::expected<std::unique_ptr<OffscreenWindow>, Error> makeOffscreenWindow(const QString &,
                                                                               QPoint,
                                                                               QSize) override
    {
        return std::make_unique<StubWindow>();
    }
    std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer(
        const OffscreenWindow &) override
    {
        return std::make_unique<StubLayer>(log);
    }
    std::unique_ptr<PressMonitor> monitorPresses(std::function<void(QPoint)> pressed) override
    {
        return std::make_unique<StubMonitor>(log, std::move(pressed));
    }
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter & /*filter*/, const StreamConfiguration &configuration) override
    {
        log.configuration = configuration;
        return std::make_unique<StubStream>(log, startPermits, startAnswer);
    }
};

struct Fixture {
    CaptureDesktop desktop;
    std::shared_ptr<SharingWindow> window
        = std::make_shared<SharingWindow>(desktop, QSize(100, 50));
    std::unique_ptr<ScreenCaptureService> service = std::make_unique<ScreenCaptureService>(desktop);
    int ends = 0;

    Fixture()
    {
        service->setOnCaptureEnded([this] {
            QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
            ++ends;
        });
    }

    CaptureServiceProtocol::StartResult start()
    {
        return QCoro::waitFor(service->startCapture(frame, window));
    }

    /** Hands a frame over as a stream does, on a thread of its own. */
    void deliver(SampleType type) const
    {
        const std::unique_ptr<QThread> thread(QThread::create([this, type] {
            SampleBuffer sample;
            sample.drawable = 7;
            desktop.log.handlers.didOutputSampleBuffer(std::move(sample), type);
        }));
        thread->start();
        thread->wait();
        QCoreApplication::processEvents();
    }
};

} // namespace

class ScreenCaptureServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void configuration_isMadeFromTheArea();
    void start_fails_withTheReason_data();
    void start_fails_withTheReason();
    void frames_areShownOrReturned();
    void frames_andEnds_areHeardOnce_whileTheirRunLasts();
    void stop_endsTheStart_whenItIsInFlight();
    void service_leavesNothing_whenDestroyedDuringAStart();
    void window_liesWhereNoDisplayShowsIt();
    void press_isShownWhereItWas_atAnyScale();
    void rings_fadeAndEnd_alsoWhereTheServerIsBusy();
};

void ScreenCaptureServiceTest::configuration_isMadeFromTheArea()
{
    struct Row {
        CaptureFrame area;
        QSize pixels;
        Rect source;
    };
    for (const auto &[area, pixels, source] :
         {Row{frame, {200, 100}, {10, 830, 100, 50}},
          Row{{0, 0, 100.7, 50.2}, {201, 100}, {0, 849.8, 100.7, 50.2}},
          Row{{10, 20, -100, -50}, {200, 100}, {10, 830, 100, 50}},
          Row{{-500, 1000, 10, 10}, {20, 20}, {-500, -110, 10, 10}}}) {
        const auto configuration = streamConfiguration(area, 900);
        QCOMPARE(QSize(int(configuration.width), int(configuration.height)), pixels);
        QCOMPARE(configuration.sourceRect, source);
        QVERIFY(configuration.showsCursor && !configuration.capturesAudio);
    }
}

void ScreenCaptureServiceTest::start_fails_withTheReason_data()
{
    QTest::addColumn<bool>("isDenied");
    QTest::addColumn<bool>("hasDisplay");
    QTest::addColumn<QString>("reason");
    QTest::newRow("denied") << true << true << QStringLiteral("denied");
    QTest::newRow("no display") << false << false
                                << QStringLiteral("The operation couldn't be completed. "
                                                  "(CaptureError error 0.)");
    QTest::newRow("stream") << false << true << QStringLiteral("broken");
}

void ScreenCaptureServiceTest::start_fails_withTheReason()
{
    QFETCH(bool, isDenied);
    QFETCH(bool, hasDisplay);
    QFETCH(QString, reason);
    Fixture fixture;
    fixture.desktop.startAnswer = std::unexpected(Error{QStringLiteral("broken"), {}});
    if (isDenied) {
        fixture.desktop.denyContent();
    } else if (!hasDisplay) {
        fixture.desktop.content->displays.clear();
    }
    const auto result = fixture.start();
    QVERIFY(!result);
    QCOMPARE(result.error().description, reason);
    QCOMPARE(fixture.desktop.log.running, 0);
    QVERIFY(!fixture.desktop.log.pressed);
    QCOMPARE(fixture.ends, 0);
}

void ScreenCaptureServiceTest::frames_areShownOrReturned()
{
    Fixture fixture;
    QVERIFY(fixture.start());
    auto &log = fixture.desktop.log;
    fixture.deliver(SampleType::Screen);
    QCOMPARE(log.shown.size(), 1);
    fixture.deliver(SampleType::Audio);
    QCOMPARE(log.shown.size(), 1);
    log.layerIsReady = false;
    fixture.deliver(SampleType::Screen);
    QCOMPARE(log.shown.size(), 1);
    QCOMPARE(log.returned.size(), 1);
    QCOMPARE(log.returned.front().drawable, 7U);
}

void ScreenCaptureServiceTest::frames_andEnds_areHeardOnce_whileTheirRunLasts()
{
    Fixture fixture;
    QVERIFY(fixture.start());
    const auto oldHandlers = fixture.desktop.log.handlers;
    oldHandlers.didStopWithError({});
    QTRY_COMPARE(fixture.ends, 1);
    fixture.service->stopCapture();
    fixture.service->stopCapture();
    QTRY_COMPARE(fixture.desktop.log.running, 0);
    QCOMPARE(fixture.desktop.log.layers, 0);
    QVERIFY(fixture.start());
    oldHandlers.didOutputSampleBuffer({}, SampleType::Screen);
    oldHandlers.didStopWithError({});
    QCoreApplication::processEvents();
    QVERIFY(fixture.desktop.log.shown.empty());
    QCOMPARE(fixture.ends, 1);
    // Nobody is there any more to be told.
    fixture.service.reset();
    fixture.deliver(SampleType::Screen);
    QVERIFY(fixture.desktop.log.shown.empty());
}

void ScreenCaptureServiceTest::stop_endsTheStart_whenItIsInFlight()
{
    for (const bool whileStreamStarts : {false, true}) {
        Fixture fixture;
        if (whileStreamStarts) {
            fixture.desktop.startPermits.acquire(1000);
        } else {
            fixture.desktop.holdContent();
        }
        std::optional<bool> succeeded;
        fixture.service->startCapture(frame, fixture.window)
            .then([&](const CaptureServiceProtocol::StartResult &r) { succeeded = bool(r); });
        QTRY_VERIFY(!whileStreamStarts || fixture.desktop.log.configuration.width > 0);
        fixture.service->stopCapture();
        // A new run may begin before the old start has found out.
        std::optional<bool> secondSucceeded;
        fixture.service->startCapture(frame, fixture.window)
            .then([&](const CaptureServiceProtocol::StartResult &r) { secondSucceeded = bool(r); });
        fixture.desktop.releaseContent();
        fixture.desktop.startPermits.release(1000);
        QTRY_VERIFY(succeeded && secondSucceeded);
        QVERIFY(*succeeded && *secondSucceeded);
        QTRY_COMPARE(fixture.desktop.log.running, 1);
    }
}

void ScreenCaptureServiceTest::service_leavesNothing_whenDestroyedDuringAStart()
{
    Fixture fixture;
    fixture.desktop.startPermits.acquire(1000);
    auto task = fixture.service->startCapture(frame, fixture.window);
    QTRY_VERIFY(fixture.desktop.log.configuration.width > 0);
    fixture.desktop.startPermits.release(1000);
    fixture.service.reset();
    QCOMPARE(fixture.desktop.log.running, 0);
    QVERIFY(QCoro::waitFor(std::move(task)));
}

void ScreenCaptureServiceTest::window_liesWhereNoDisplayShowsIt()
{
    QCOMPARE(unseenOrigin({640, 360}), QPoint(-10000, -10000));
    QCOMPARE(unseenOrigin({32767, 10000}), QPoint(-10000, -10000));
    QCOMPARE(unseenOrigin({12000, 11000}), QPoint(-10000, -11000));
}

void ScreenCaptureServiceTest::press_isShownWhereItWas_atAnyScale()
{
    for (const double scale : {1.0, 2.0}) {
        Fixture fixture;
        auto &log = fixture.desktop.log;
        fixture.desktop.scale = scale;
        const CaptureFrame area{.x = 100, .y = 100, .width = -400, .height = 300};
        QVERIFY(QCoro::waitFor(fixture.service->startCapture(area, fixture.window)));
        const MainDisplay display{.pixels = {100, 0, 1440, 900}, .scale = scale};
        const auto press = [&](double x, double y) {
            const QPoint place = display.areaPixels({x, y, 0, 0}).topLeft();
            log.highlights.clear();
            log.pressed(place);
            return place;
        };
        for (const QPointF outside : {QPointF(500, 120), {150, 400}, {99, 120}, {150, 99}}) {
            press(outside.x(), outside.y());
            QVERIFY(log.highlights.empty());
        }
        for (const QPointF inside : {QPointF(100, 100), {150, 120}, {499, 399}}) {
            const QPoint place = press(inside.x(), inside.y());
            QTRY_VERIFY(!log.highlights.empty());
            const Highlight ring = log.highlights.back().back();
            QCOMPARE(ring.image.size(), QSize(64, 64) * scale);
            QCOMPARE(ring.topLeft + QPoint(32, 32) * scale, place);
            const auto alpha = [&](int x) {
                return qAlpha(ring.image.pixel(QPoint(int(x * scale), int(32 * scale))));
            };
            QVERIFY(alpha(1) == 255 && alpha(2) == 255 && alpha(6) == 0 && alpha(32) == 0);
        }
        fixture.service->stopCapture();
        QVERIFY(!log.pressed);
    }
}

void ScreenCaptureServiceTest::rings_fadeAndEnd_alsoWhereTheServerIsBusy()
{
    Fixture fixture;
    auto &log = fixture.desktop.log;
    QVERIFY(fixture.start());
    log.pressed({150, 850});
    QCOMPARE(log.highlights.size(), 1);
    log.pressed({160, 850}); // comes with the next step
    QCOMPARE(log.highlights.size(), 1);
    QTRY_COMPARE(log.highlights.back().size(), 2);
    log.layerIsReady = false;
    QTRY_VERIFY(log.highlights.back().empty());
    auto tries = log.highlights.size();
    QTRY_VERIFY(log.highlights.size() > tries);
    log.layerIsReady = true;
    tries = log.highlights.size();
    QTRY_VERIFY(log.highlights.size() > tries);
    double before = 1;
    for (const auto &shown : log.highlights) {
        const double opacity = shown.empty() ? 0 : shown.back().opacity;
        QVERIFY(opacity < before || opacity == 0 || shown.size() == 2);
        before = opacity;
    }
    // No step is due any more, so the next press is shown at once.
    log.pressed({150, 850});
    QCOMPARE(log.highlights.back().size(), 1);
}

QTEST_MAIN(ScreenCaptureServiceTest)
#include "ScreenCaptureServiceTest.moc"
