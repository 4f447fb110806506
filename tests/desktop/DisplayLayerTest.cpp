// SPDX-License-Identifier: MIT
#include "capture/ScreenCaptureService.h"
#include "platform/x11/OffscreenWindowX11.h"
#include "platform/x11/X11Backend.h"
#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/WaitFor.h"
#include "rig/XvfbServer.h"

#include <QCoroTask>
#include <QTest>

#include <algorithm>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr auto patience = std::chrono::seconds(5); ///< how long a condition may take to hold
constexpr QRect source(100, 100, 200, 100);
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;

/** A private X server with a second client, and the back end on it. */
struct DesktopFixture {
    explicit DesktopFixture(const XvfbServer::Options &options = {})
        : server(required(XvfbServer::start(options)))
        , client(required(XClient::connect(server.displayName())))
    {
        qputenv("DISPLAY", server.displayName().toLocal8Bit());
    }

    XvfbServer server;
    XClient client;
    Backend desktop = x11::makeBackend(false);
};

/** A window of the program, and a layer in it, without a stream. The source is red and green. */
struct LayerFixture : DesktopFixture {
    explicit LayerFixture(QSize windowSize)
        : left(required(ColorWindow::show(client, {.rectangle = source, .color = red})))
        , right(required(ColorWindow::show(
              client, {.rectangle = source.adjusted(100, 0, 0, 0), .color = green})))
        , window(
              desktop.outputWindows->make(QStringLiteral("layer"), {QPoint(), windowSize}).value())
        , layer(window->makeDisplayLayer().value())
    {
        window->orderFront();
    }

    SampleBuffer wholeFrame() const
    {
        return {.picture = ServerDrawable{client.root()},
                .source = source,
                .changed = source,
                .pointer = std::nullopt,
                .time = {}};
    }

    /** Whether the window comes to have these colours, each at its place. */
    bool shows(const std::vector<std::pair<QPoint, QRgb>> &pixels) const
    {
        const auto isSo = [&] {
            const QImage picture
                = windowPicture(client, *findWindow(client, QStringLiteral("layer")))
                      .value_or(QImage());
            return std::ranges::all_of(pixels, [&](const auto &pixel) {
                return picture.pixel(pixel.first) == pixel.second;
            });
        };
        return waitFor(isSo, patience);
    }

    ColorWindow left;
    ColorWindow right;
    std::unique_ptr<OutputWindow> window;
    std::unique_ptr<DisplayLayer> layer;
};

} // namespace

class DisplayLayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_hasEverything_whateverTheWindowsShape()
    {
        QImage sprite(10, 10, QImage::Format_ARGB32_Premultiplied);
        sprite.fill(blue);
        for (const auto &[size, fitted] : {std::pair(source.size(), QRect(0, 0, 200, 100)),
                                           {QSize(400, 400), QRect(0, 100, 400, 200)},
                                           {QSize(300, 50), QRect(100, 0, 100, 50)},
                                           {QSize(600, 300), QRect(0, 0, 600, 300)}}) {
            LayerFixture fixture(size);
            const double scale = double(fitted.width()) / source.width();
            const auto at = [&, &fitted = fitted](double x, double y) {
                return fitted.topLeft() + QPoint(int(x * scale), int(y * scale));
            };
            SampleBuffer sample = fixture.wholeFrame();
            sample.pointer = PointerSprite{.serial = 1, .topLeft = {120, 120}, .image = sprite};
            const auto highlighted = [&](double opacity) {
                return fixture.layer->setHighlights(
                    {{.image = sprite, .topLeft = {150, 150}, .opacity = opacity}});
            };
            QVERIFY(highlighted(1));
            fixture.layer->enqueueSampleBuffer(sample);
            QVERIFY(fixture.shows({{at(4, 4), red},
                                   {at(95, 95), red},
                                   {at(104, 4), green},
                                   {at(195, 95), green},
                                   {at(25, 25), blue},
                                   {at(17, 25), red},
                                   {at(33, 25), red},
                                   {at(55, 55), blue}}));
            QVERIFY(fitted.size() == size
                    || fixture.shows({{{0, 0}, 0xff000000},
                                      {{size.width() - 1, size.height() - 1}, 0xff000000}}));
            for (const double opacity : {0.5, 0.0}) {
                QVERIFY(waitFor([&] { return highlighted(opacity); }, patience));
                QVERIFY(fixture.shows({{at(55, 55), opacity > 0 ? 0xff80007f : red}}));
            }
        }
    }

    void window_liesWhereNoDisplayShowsIt()
    {
        QCOMPARE(x11::unseenOrigin({32767, 9999}), QPoint(-10000, -10000));
        QCOMPARE(x11::unseenOrigin({12000, 11000}), QPoint(-10000, -11000));
    }

    void layer_isNotReady_untilTheServerHasDoneTheFrame()
    {
        LayerFixture fixture(source.size());
        QVERIFY(fixture.layer->isReadyForMoreMediaData());
        // While another client grabs the server, nobody else's requests are handled.
        xcb_grab_server(fixture.client.get());
        fixture.client.sync();
        fixture.layer->enqueueSampleBuffer(fixture.wholeFrame());
        QVERIFY(!fixture.layer->isReadyForMoreMediaData());
        xcb_ungrab_server(fixture.client.get());
        fixture.client.flush();
        QVERIFY(waitFor([&] { return fixture.layer->isReadyForMoreMediaData(); }, patience));
    }

    void changes_comeAgain_whenTheirFrameWasReturned()
    {
        const QRegion one(QRect(source.topLeft() + QPoint(10, 10), QSize(20, 20)));
        const QRegion aside(source.translated(150, 50));
        // Without a change, only the pointer left.
        for (const auto &[returned, comes] :
             {std::pair(one, one), {QRegion(), QRegion(source)}, {aside, aside & source}}) {
            DesktopFixture fixture;
            // The stream's thread may end after this scope.
            const auto changes = std::make_shared<std::vector<QRegion>>();
            const CaptureFrame area{100, 824, 200, 100}; // the source's, on a screen 1024 high
            const auto stream = fixture.desktop.screen->makeCaptureStream(
                {.display = *fixture.desktop.displays->mainDisplay()},
                streamConfiguration(area, 1024));
            const auto keep = [changes](const SampleBuffer &sample) {
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(),
                    [changes, region = sample.changed] { changes->push_back(region); },
                    Qt::QueuedConnection);
            };
            QVERIFY(QCoro::waitFor(
                stream->startCapture({.didOutputSampleBuffer = keep, .didStopWithError = {}})));
            QVERIFY(waitFor([&] { return !changes->empty(); }, patience));
            QCOMPARE(changes->front(), QRegion(source));

            // The stream's first look at the screen may fall together with a frame that is
            // returned.
            SampleBuffer sample;
            sample.source = source;
            sample.changed = returned;
            changes->clear();
            const auto cameAgain = [&, &comes = comes] {
                stream->returnSampleBuffer(sample);
                return std::ranges::find(*changes, comes) != changes->end();
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

QTEST_MAIN(DisplayLayerTest)
#include "DisplayLayerTest.moc"
