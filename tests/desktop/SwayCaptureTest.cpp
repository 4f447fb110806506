// SPDX-License-Identifier: MIT
#include "platform/wlroots/WlrootsBackend.h"
#include "rig/ColorWindow.h"
#include "rig/SwayServer.h"
#include "rig/VirtualPointer.h"
#include "rig/WaitFor.h"
#include "tests/desktop/SwayViewer.h"

#include <QCoroTask>
#include <QTest>

#include <set>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;
constexpr auto patience = SwayViewer::patience;
constexpr QRect screen = SwayViewer::screen;
constexpr QRect area(200, 150, 320, 240);
const QString firstOutput = QStringLiteral("HEADLESS-1");
const QString secondOutput = QStringLiteral("HEADLESS-2");

struct Desktop {
    SwayServer server = required(SwayServer::start());
    XClient client = required(XClient::connect(server.displayName()));
    VirtualPointer pointer = required(VirtualPointer::plugIn(server.socket()));
    SwayViewer viewer{server};

    Desktop() { pointer.moveTo({1200, 700}); }

    ColorWindow window(QRect rectangle, QRgb color) const
    {
        return required(ColorWindow::show(client, {.rectangle = rectangle, .color = color}));
    }
};

} // namespace

class SwayCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void area_isMoved_whileTheScreenStandsStill_andAtAnyRate()
    {
        Desktop desktop;
        auto &viewer = desktop.viewer;
        const auto left = desktop.window(area.adjusted(20, 20, -200, -40), red);
        const auto right = desktop.window({700, 300, 200, 300}, green);
        QVERIFY(viewer.watch(area) && viewer.showsPlace());
        const auto move = [&](const QRect &place) {
            viewer.place = place;
            const int below = screen.height() - place.y() - place.height();
            QVERIFY(viewer.stream->move(
                {double(place.x()), double(below), double(place.width()), double(place.height())}));
        };
        move({650, 250, 320, 240});
        QVERIFY(viewer.showsPlace());
        int step = 0;
        const auto enough = viewer.changes.size() + 10;
        const auto hasFrames = [&] {
            move(area.translated(++step % 300, 0));
            return viewer.changes.size() > enough;
        };
        QVERIFY(waitFor(hasFrames, patience));
        QVERIFY(viewer.showsPlace());
        move({690, 290, 100, 50});
        QVERIFY(viewer.showsPlace());
    }

    void picture_isTheArea_whereverItLies()
    {
        const Desktop desktop;
        const auto a = desktop.window({0, 0, 640, 360}, red);
        const auto b = desktop.window({600, 340, 680, 380}, green);
        for (const QRect place : {area, screen, QRect(640, 360, 1, 1), QRect(1270, 710, 10, 10)}) {
            SwayViewer viewer(desktop.server);
            QVERIFY(viewer.watch(place));
            QVERIFY(viewer.showsPlace());
        }
        SwayViewer beyond(desktop.server);
        QVERIFY(beyond.watch({-50, -40, 200, 100}));
        QVERIFY(waitFor([&] { return !beyond.picture.isNull(); }, patience));
        QCOMPARE(beyond.picture.pixel(49, 50), 0xff000000);
        QCOMPARE(beyond.picture.pixel(50, 39), 0xff000000);
        QCOMPARE(beyond.picture.pixel(50, 40), red);
    }

    void picture_followsTheScreenAndThePointer()
    {
        Desktop desktop;
        SwayViewer &viewer = desktop.viewer;
        QVERIFY(viewer.watch(area));
        const auto window = desktop.window(area.adjusted(20, 20, -100, -100), red);
        QVERIFY(viewer.showsPlace());
        window.setColor(blue);
        QVERIFY(waitFor([&] { return viewer.picture.pixel(50, 50) == blue; }, patience));
        QVERIFY(viewer.showsPlace());
        const QImage without = viewer.picture;
        for (const QPoint offset : {QPoint(50, 50), QPoint(0, 0), QPoint(319, 239)}) {
            desktop.pointer.moveTo(area.topLeft() + offset);
            QVERIFY(viewer.showsPlace());
            QVERIFY(viewer.picture != without);
        }
        desktop.pointer.moveTo({1200, 700});
        QVERIFY(viewer.showsPlace());
        QCOMPARE(viewer.picture, without);
    }

    void frames_areNotMade_whenNothingInTheAreaChanges()
    {
        Desktop desktop;
        SwayViewer &viewer = desktop.viewer;
        const auto inside = desktop.window(area.adjusted(10, 10, -10, -10), green);
        const auto outside = desktop.window({900, 500, 100, 100}, red);
        QVERIFY(viewer.watch(area));
        QVERIFY(viewer.showsPlace());
        QVERIFY(viewer.settle());
        viewer.changes.clear();
        for (int i = 0; i < 20; ++i) {
            outside.setColor(i % 2 != 0 ? red : blue);
            desktop.pointer.moveTo({900 + i, 500});
        }
        inside.setColor(blue);
        QVERIFY(viewer.showsPlace());
        QVERIFY(viewer.settle());
        QVERIFY(viewer.changes.size() <= 2); // sway may draw the change in two steps
        for (const QRegion &changed : viewer.changes) {
            QVERIFY(QRect(QPoint(), area.size()).contains(changed.boundingRect()));
        }
    }

    void pixels_comeAgain_whenTheirFrameWasReturned()
    {
        Desktop desktop;
        SwayViewer &viewer = desktop.viewer;
        const auto window = desktop.window(area.adjusted(10, 10, -10, -10), green);
        QVERIFY(viewer.watch(area));
        QVERIFY(viewer.showsPlace());
        viewer.returning = 3;
        window.setColor(red);
        QVERIFY(waitFor([&] { return viewer.returning == 0; }, patience));
        QVERIFY(viewer.showsPlace());
    }

    void pictures_stayAsTheyAre_whileSomebodyHoldsThem()
    {
        Desktop desktop;
        SwayViewer &viewer = desktop.viewer;
        const auto window = desktop.window(area, green);
        QVERIFY(viewer.watch(area));
        QVERIFY(viewer.showsPlace());
        viewer.keeps = true;
        const auto held = [&] {
            std::set<const void *> buffers;
            for (const SampleBuffer &sample : viewer.kept) {
                if (const auto *pixels = std::get_if<MappedPixels>(&sample.picture)) {
                    buffers.insert(pixels->data);
                }
            }
            return buffers.size();
        };
        for (const QRgb color : {red, blue, green, red, blue, green}) {
            window.setColor(color);
            waitFor([&] { return viewer.picture.pixel(50, 50) == color; },
                    std::chrono::milliseconds(200));
        }
        QVERIFY(held() >= 2); // the stream waits for a buffer, it does not take one back
        QCOMPARE(held(), size_t(std::ranges::count_if(viewer.kept, [](const auto &sample) {
                     return std::holds_alternative<MappedPixels>(sample.picture);
                 })));
        viewer.keeps = false;
        viewer.kept.clear();
        QVERIFY(viewer.showsPlace());
    }

    void capture_goesOn_whenOutputsChange()
    {
        Desktop desktop;
        const SwayServer &server = desktop.server;
        SwayViewer &viewer = desktop.viewer;
        const auto window = desktop.window({1200, 100, 160, 120}, red);
        viewer.place = {1200, 100, 160, 120};
        QVERIFY(server.command(QStringLiteral("output HEADLESS-1 position 0 0")));
        QVERIFY(server.command(QStringLiteral("create_output")));
        QVERIFY(server.command(
            QStringLiteral("output HEADLESS-2 mode --custom 640x480@60Hz position 1280 0")));
        QVERIFY(
            waitFor([&] { return server.outputPlace(secondOutput) == QRect(1280, 0, 640, 480); },
                    patience));
        // Over both.
        QVERIFY(viewer.watch({1200, 100, 160, 120}));
        QVERIFY(viewer.showsPlace());
        window.setColor(green);
        QVERIFY(viewer.showsPlace());
        QRect place(1274, 110, 30, 20);
        const auto left = desktop.window(place, blue);
        const auto low = desktop.window({1300, 200, 15, 10}, red);
        for (const char *change : {"90", "180", "270", "flipped", "flipped-90", "flipped-270"}) {
            QVERIFY(server.command(QStringLiteral("output HEADLESS-2 transform ")
                                   + QString::fromLatin1(change)));
            place.translate(10, 0);
            left.setGeometry(place);
            QVERIFY2(viewer.showsPlace(), change);
        }
        // With four pixels for one of a window, where readers differ at the edges.
        QVERIFY(server.command(QStringLiteral("output HEADLESS-2 transform normal scale 2")));
        left.setGeometry({1290, 150, 30, 20});
        const auto shows = [&](int y, QRgb color) {
            return waitFor([&] { return viewer.picture.pixel(105, y) == color; }, patience);
        };
        QVERIFY(shows(60, blue));
        QVERIFY(shows(20, green)); // sway may draw it later
        QCOMPARE(viewer.picture.size(), QSize(160, 120));
        QVERIFY(viewer.ends.isEmpty());
    }

    void start_fails_whereNothingCanBeCopied()
    {
        Desktop desktop;
        const auto off = desktop.viewer.watch({5000, 5000, 10, 10});
        QVERIFY(!off && off.error().text.contains(QStringLiteral("not on any display")));
        qputenv("WAYLAND_DISPLAY", "/nowhere/wayland-0");
        QVERIFY(!wlroots::isUsable());
        SwayViewer &viewer = desktop.viewer;
        QVERIFY(!QCoro::waitFor(viewer.source.shareableContent({})));
    }

    void capture_ends_whenTheCompositorDoes()
    {
        auto server = std::make_unique<SwayServer>(required(SwayServer::start()));
        SwayViewer viewer(*server);
        QVERIFY(viewer.watch(area));
        server.reset();
        QVERIFY(waitFor([&] { return !viewer.ends.isEmpty(); }, patience));
    }
};

QTEST_GUILESS_MAIN(SwayCaptureTest)
#include "SwayCaptureTest.moc"
