// SPDX-License-Identifier: MIT
#include "capture/ScreenCaptureService.h"

#include "capture/SharingWindow.h"
#include "tests/support/Fakes.h"

#include <QCoroTask>
#include <QPalette>
#include <QTest>
#include <QThread>

#include <thread>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame frame{.x = 10, .y = 20, .width = 100, .height = 50};

/** The calls that the service made to the platform, and its results. */
struct Log {
    int shown = 0; ///< frames
    int returned = 0; ///< frames
    int layers = 0;
    int plain = 0; ///< pictures of a pause
    int finished = 0; ///< waits for the server
    bool layerIsReady = true;
    bool startsAreHeld = false; ///< until their calls are completed
    PendingCalls<std::expected<void, Error>> starts;
    std::expected<void, Error> startAnswer;
    int running = 0; ///< streams
    CaptureStream::Handlers handlers; ///< of the latest stream
    std::function<void(QPoint)> pressed; ///< while there is a monitor
    std::vector<std::vector<Highlight>> highlights;
    StreamConfiguration configuration;
};

template<typename Role>
struct Stub : Role {
    explicit Stub(Log &owner)
        : log(owner)
    {
    }

    Log &log;
};

struct StubStream : Stub<CaptureStream> {
    using Stub::Stub;
    ~StubStream() override { stopCapture(); }
    QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) override
    {
        log.handlers = std::move(handlers);
        isRunning_ = log.startAnswer.has_value();
        log.running += isRunning_ ? 1 : 0;
        if (log.startsAreHeld) {
            co_return co_await pend(log.starts);
        }
        co_return log.startAnswer;
    }
    void stopCapture() override { log.running -= std::exchange(isRunning_, false) ? 1 : 0; }
    void returnSampleBuffer(const SampleBuffer &) override { ++log.returned; }
    void invalidate() override { }

    bool isRunning_ = false;
};

struct StubLayer : Stub<DisplayLayer> {
    explicit StubLayer(Log &owner)
        : Stub(owner)
    {
        ++log.layers;
    }
    ~StubLayer() override { --log.layers; }
    bool isReadyForMoreMediaData() override { return log.layerIsReady; }
    void enqueueSampleBuffer(const SampleBuffer &) override { ++log.shown; }
    bool setHighlights(const std::vector<Highlight> &highlights) override
    {
        log.highlights.push_back(highlights);
        return log.layerIsReady;
    }
    void showPlain(const QColor &, const QImage &) override { ++log.plain; }
    void finish() override { ++log.finished; }
};

struct StubMonitor : Stub<PressMonitor> {
    using Stub::Stub;
    ~StubMonitor() override { log.pressed = {}; }
};

struct StubWindow : Stub<OutputWindow> {
    using Stub::Stub;
    bool isVisible() const override { return true; }
    void orderFront() override { }
    void orderOut() override { }
    std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer() override
    {
        return std::make_unique<StubLayer>(log);
    }
};

struct CaptureDesktop : FakeDesktop {
    Log log;

    using FakeDesktop::make;
    Made<OutputWindow> make(const QString &, QRect) override
    {
        return std::make_unique<StubWindow>(log);
    }
    std::unique_ptr<PressMonitor> monitor(std::function<void(QPoint)> pressed) override
    {
        log.pressed = std::move(pressed);
        return std::make_unique<StubMonitor>(log);
    }
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &, const StreamConfiguration &configuration) override
    {
        log.configuration = configuration;
        return std::make_unique<StubStream>(log);
    }
};

struct Fixture {
    CaptureDesktop desktop;
    std::shared_ptr<SharingWindow> window
        = std::make_shared<SharingWindow>(desktop, QRect(0, 0, 9, 9));
    std::unique_ptr<ScreenCaptureService> service
        = std::make_unique<ScreenCaptureService>(desktop.backend());
    int ends = 0;

    Fixture()
    {
        desktop.all = {{.name = {}, .pixels = {100, 0, 1440, 900}}};
        service->setOnCaptureEnded([this](const Error &reason) {
            QCOMPARE(reason.text, QStringLiteral("gone"));
            QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
            ++ends;
        });
    }

    CaptureServiceProtocol::StartResult start()
    {
        return QCoro::waitFor(service->startCapture(frame, window));
    }

    /** Hands a frame over as a stream does, on a thread of its own. */
    void deliver() const
    {
        std::thread(desktop.log.handlers.didOutputSampleBuffer, SampleBuffer{}).join();
        QCoreApplication::processEvents();
    }
};

} // namespace

class ScreenCaptureServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void configuration_isMadeFromTheArea()
    {
        const auto configuration = streamConfiguration({10, 20, -100.9, -50.25}, 900);
        QCOMPARE(QSize(int(configuration.width), int(configuration.height)), QSize(201, 100));
        QCOMPARE(configuration.sourceRect, (Rect{10, 829.75, 100.9, 50.25}));
        QVERIFY(configuration.showsCursor && !configuration.capturesAudio);
    }

    void start_fails_withTheReason()
    {
        Fixture empty;
        empty.desktop.all.clear();
        Fixture broken;
        broken.desktop.log.startAnswer = std::unexpected(Error{QStringLiteral("broken"), {}});
        const char *noDisplay = "The operation couldn't be completed. (CaptureError error 0.)";
        for (const auto &[fixture, reason] : {std::pair(&empty, noDisplay), {&broken, "broken"}}) {
            const auto result = fixture->start();
            QVERIFY(!result);
            QCOMPARE(result.error().text, QString::fromLatin1(reason));
            QCOMPARE(fixture->ends, 0);
            QVERIFY(!fixture->desktop.log.pressed);
        }
    }

    void framesAndEnds_areHeardOnce_whileTheirRunLasts()
    {
        Fixture fixture;
        Log &log = fixture.desktop.log;
        QVERIFY(fixture.start());
        fixture.deliver();
        QCOMPARE(log.shown, 1);
        log.layerIsReady = false;
        fixture.deliver();
        QCOMPARE(log.returned, 1);

        const auto oldHandlers = log.handlers;
        oldHandlers.didStopWithError({QStringLiteral("gone"), {}});
        QTRY_COMPARE(fixture.ends, 1);
        fixture.service->stopCapture();
        fixture.service->stopCapture();
        QTRY_COMPARE(log.running, 0);
        QCOMPARE(log.layers, 0);
        QVERIFY(fixture.start());
        log.layerIsReady = true;
        oldHandlers.didOutputSampleBuffer({});
        oldHandlers.didStopWithError({});
        QCoreApplication::processEvents();
        QCOMPARE(fixture.ends, 1);
        fixture.service.reset(); // No service is left to be notified.
        fixture.deliver();
        QCOMPARE(log.shown, 1);
    }

    void stop_endsTheStart_whenItIsInFlight()
    {
        for (const int starts : {1, 2}) {
            Fixture fixture;
            fixture.desktop.log.startsAreHeld = true;
            int succeeded = 0;
            const auto start = [&] {
                fixture.service->startCapture(frame, fixture.window).then([&](const auto &result) {
                    succeeded += result ? 1 : 0;
                });
            };
            start();
            fixture.service->stopCapture();
            if (starts == 2) {
                start(); // A new run may begin before the old start has found out.
            }
            fixture.desktop.log.starts.clear(); // They succeed.
            QTRY_COMPARE(succeeded, starts);
            QTRY_COMPARE(fixture.desktop.log.running, starts - 1);
        }
    }

    void stream_isReplaced_withTheFirstFrameOfTheNext()
    {
        Fixture fixture;
        Log &log = fixture.desktop.log;
        QVERIFY(fixture.start());
        const auto old = log.handlers;
        fixture.deliver();
        const auto move = [&] {
            return QCoro::waitFor(fixture.service->moveCapture({.x = 1, .width = 9, .height = 9}));
        };
        // One that cannot start, or that ends at once, changes nothing.
        log.startAnswer = std::unexpected(Error{QStringLiteral("broken"), {}});
        QCOMPARE(move().error().text, QStringLiteral("broken"));
        log.startAnswer = {};
        QVERIFY(move());
        log.handlers.didStopWithError({});
        QTRY_COMPARE(log.running, 1);
        fixture.desktop.denyContent();
        QCOMPARE(move().error().text, QStringLiteral("denied"));
        fixture.desktop.content = {};

        QVERIFY(move());
        QCOMPARE(log.running, 2);
        old.didOutputSampleBuffer({});
        QCoreApplication::processEvents();
        QCOMPARE(log.shown, 2);
        fixture.deliver();
        QCOMPARE(std::pair(log.shown, log.running), std::pair(3, 1));
        QCOMPARE(log.configuration.sourceRect, (Rect{1, 891, 9, 9}));
        old.didOutputSampleBuffer({}); // may still be on their way
        old.didStopWithError({});
        QCoreApplication::processEvents();
        QCOMPARE(std::pair(log.shown, fixture.ends), std::pair(3, 0));

        // If the present one ends first, so does the next.
        const auto present = log.handlers;
        QVERIFY(move());
        present.didStopWithError({QStringLiteral("gone"), {}});
        QTRY_COMPARE(fixture.ends, 1);
        QCOMPARE(log.running, 1); // the one that has ended by itself
        fixture.deliver();
        QCOMPARE(log.shown, 3);
    }

    void pause_endsEverything_butKeepsTheLayer()
    {
        for (const bool isMoving : {false, true}) {
            Fixture fixture;
            Log &log = fixture.desktop.log;
            QVERIFY(fixture.start());
            if (isMoving) {
                log.startsAreHeld = true;
                fixture.service->moveCapture(frame);
            }
            fixture.service->pauseCapture(PausePicture::Plain);
            QCOMPARE(std::tuple(log.plain, log.finished, log.layers), std::tuple(1, 1, 1));
            log.startsAreHeld = false;
            log.starts.clear(); // They succeed.
            QTRY_COMPARE(log.running, 0);
            fixture.deliver();
            QCOMPARE(log.shown, 0);
            QVERIFY(!log.pressed);
            (*fixture.window->content())->onContentsLost();
            QCOMPARE(log.plain, 2);
            QVERIFY(fixture.start()); // in the same window
            fixture.deliver();
            QCOMPARE(log.shown, 1);
            (*fixture.window->content())->onContentsLost();
            QCOMPARE(log.plain, 2);
        }
    }

    void service_leavesNothing_whenDestroyedDuringAStart()
    {
        Fixture fixture;
        fixture.desktop.log.startsAreHeld = true;
        auto task = fixture.service->startCapture(frame, fixture.window);
        fixture.service.reset();
        QCOMPARE(fixture.desktop.log.running, 0);
        fixture.desktop.log.starts.clear();
        QVERIFY(QCoro::waitFor(std::move(task)));
    }

    void press_isShownWhereItWas_atAnyScale()
    {
        for (const double scale : {1.0, 2.0}) {
            Fixture fixture;
            auto &log = fixture.desktop.log;
            fixture.desktop.scale = scale;
            const CaptureFrame area{.x = 100, .y = 100, .width = -400, .height = 300};
            QVERIFY(QCoro::waitFor(fixture.service->startCapture(area, fixture.window)));
            const MainDisplay display{.pixels = {100, 0, 1440, 900}, .scale = scale};
            const auto press = [&](QPoint place) {
                log.highlights.clear();
                log.pressed(place);
            };
            const QRect pixels = display.areaPixels({100, 100, 400, 300});
            for (const QPoint outside :
                 {pixels.topLeft() - QPoint(0, 1), pixels.topLeft() - QPoint(1, 0),
                  pixels.topRight() + QPoint(1, 0), pixels.bottomLeft() + QPoint(0, 1)}) {
                press(outside);
                QVERIFY(log.highlights.empty());
            }
            for (const QPoint place :
                 {pixels.topLeft(), pixels.bottomRight(), pixels.topRight(), pixels.center()}) {
                press(place);
                QTRY_VERIFY(!log.highlights.empty());
                const Highlight ring = log.highlights.back().back();
                QCOMPARE(ring.image.size(), QSize(64, 64) * scale);
                QCOMPARE(ring.topLeft + QPoint(32, 32) * scale, place);
                const auto alpha = [&](int x) {
                    return qAlpha(ring.image.pixel(QPoint(int(x * scale), int(32 * scale))));
                };
                QVERIFY(alpha(1) == 255 && alpha(2) == 255 && alpha(6) == 0 && alpha(32) == 0);
            }
            QGuiApplication::setPalette(QPalette(Qt::black));
            press(pixels.center());
            QTRY_VERIFY(!log.highlights.empty());
            const QImage ring = log.highlights.back().back().image;
            QCOMPARE(ring.pixel(int(scale), int(32 * scale)), QColor(10, 132, 255).rgb());
            QGuiApplication::setPalette(QPalette());
            fixture.service->stopCapture();
            QVERIFY(!log.pressed);
        }
    }

    void rings_fadeAndEnd_alsoWhereTheServerIsBusy()
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
};

QTEST_MAIN(ScreenCaptureServiceTest)
#include "ScreenCaptureServiceTest.moc"
