// SPDX-License-Identifier: MIT
#include "platform/pipewire/FlowWatch.h"
#include "platform/x11/ParkedWindowX11.h"
#include "rig/ColorWindow.h"
#include "rig/KWinClient.h"
#include "rig/KWinSession.h"
#include "rig/PictureComparison.h"
#include "rig/PipeWireReader.h"
#include "tests/desktop/WindowSign.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr auto patience = std::chrono::seconds(5);
constexpr QRect screen(0, 0, 1280, 720);
constexpr QSize size(400, 300);
constexpr QRgb red = 0xffff0000;
constexpr QRgb black = 0xff000000;
const QString title = QStringLiteral("Output");

/** The window in a KWin session, and a client that draws into it. */
struct ParkedFixture {
    KWinSession session;
    KWinClient kwin{session.socket()};
    XClient client = required(XClient::connect(session.displayName()));
    std::unique_ptr<OutputWindow> window;
    xcb_window_t id = XCB_WINDOW_NONE;

    /** Returns once it is drawn at its place. */
    void park(QPoint area, QPoint place)
    {
        window = x11::ParkedWindowX11::create(title, {area, size}, pipewire::watchFlow).value();
        window->orderFront();
        awaitPlace(place);
        id = findWindow(client, title, Listing::All).value_or(XCB_WINDOW_NONE);
        const auto isOpaque
            = [this] { return !propertyOf(client, id, "_NET_WM_WINDOW_OPACITY").has_value(); };
        require(waitFor(isOpaque, patience), "it stays transparent");
    }
    void awaitPlace(QPoint place) const
    {
        QRect seen;
        const auto isThere = [&] {
            const auto listed = kwin.window(title);
            seen = listed ? listed->geometry : QRect();
            return seen == QRect(place, size);
        };
        if (!waitFor(isThere, patience)) {
            throw Failure(QStringLiteral("it is at %1,%2").arg(seen.x()).arg(seen.y()));
        }
    }
    PipeWireReader record() const
    {
        return {session.pipeWireSocket(), kwin.record(*kwin.window(title))};
    }

    void draw(QRgb color) const { drawWindowSign(client, id, size, color); }
    static QImage drawn(QRgb color) { return windowSign(size, color); }

    /** An empty screen that shows one pixel of the window's in this place. */
    QImage screenWith(QPoint pixel, QRgb color) const
    {
        QImage image(screen.size(), QImage::Format_RGB32);
        image.fill(black);
        image.setPixel(pixel, color);
        return image;
    }
};

} // namespace

class ParkedWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void window_isUnseen_butForOnePixel_data()
    {
        QTest::addColumn<QPoint>("area"); // its top-left corner
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QPoint>("pixel");
        QTest::addRow("bottom right") << QPoint(100, 50) << QPoint(1279, 719) << QPoint(1279, 719);
        QTest::addRow("bottom left") << QPoint(800, 50) << QPoint(-399, 719) << QPoint(0, 719);
        QTest::addRow("top right") << QPoint(100, 400) << QPoint(1279, -299) << QPoint(1279, 0);
        QTest::addRow("top left") << QPoint(800, 400) << QPoint(-399, -299) << QPoint(0, 0);
    }
    void window_isUnseen_butForOnePixel()
    {
        QFETCH(const QPoint, area);
        QFETCH(const QPoint, place);
        QFETCH(const QPoint, pixel);
        ParkedFixture fixture;
        // The whole way of the window is watched: it must never be seen elsewhere.
        int strangePixels = 0;
        QTimer watching;
        watching.callOnTimeout([&] {
            const QImage seen = fixture.session.screenshot({0, 0, 600, 500});
            const QImage inside = seen.copy(1, 1, 599, 499);
            QImage empty(inside.size(), QImage::Format_RGB32);
            empty.fill(black);
            strangePixels += inside != empty;
        });
        watching.start(0);
        fixture.park(area, place);
        fixture.draw(red);
        QVERIFY(becomeEqual([&] { return fixture.session.screenshot(screen); },
                            [&] { return fixture.screenWith(pixel, red); }, patience));
        watching.stop();
        QCOMPARE(strangePixels, 0);
        QVERIFY(fixture.kwin.window(title)->isOffered());
        const auto states = propertyOf(fixture.client, fixture.id, "_NET_WM_STATE")->items32();
        QCOMPARE(states, std::vector{fixture.client.atom("_NET_WM_STATE_BELOW")});
        auto viewer = fixture.record();
        QVERIFY(becomeEqual([&] { return viewer.picture(); }, [&] { return fixture.drawn(red); },
                            patience));
    }

    void viewers_haveEveryPicture_alsoWhenThePixelIsCovered()
    {
        ParkedFixture fixture;
        fixture.park({100, 50}, {1279, 719});
        fixture.draw(black);
        auto viewer = fixture.record();
        QVERIFY(becomeEqual([&] { return viewer.picture(); }, [&] { return fixture.drawn(black); },
                            patience));
        for (const bool isCovered : {false, true}) {
            std::optional<ColorWindow> cover;
            if (isCovered) {
                cover = required(ColorWindow::show(
                    fixture.client, {.rectangle = screen, .kind = ColorWindow::Kind::Managed}));
                const auto pixel
                    = [&] { return fixture.session.screenshot({1279, 719, 1, 1}).pixel(0, 0); };
                QVERIFY(waitFor([&] { return pixel() == 0xff808080; }, patience));
            }
            // A picture follows each one that is drawn, 30 times.
            QElapsedTimer time;
            time.start();
            for (int i = 1; i <= 30; ++i) {
                const QRgb color = qRgb(8 * i, 100, isCovered ? 200 : 0);
                fixture.draw(color);
                QVERIFY2(
                    waitFor([&] { return viewer.picture() == fixture.drawn(color); }, patience),
                    qPrintable(QStringLiteral("picture %1").arg(i)));
            }
            qInfo("30 pictures in %lld ms", static_cast<long long>(time.elapsed()));
        }
    }

    void window_returns_whenItIsMovedOrShownAgain()
    {
        ParkedFixture fixture;
        fixture.park({100, 50}, {1279, 719});
        for (const QPoint elsewhere : {QPoint(300, 200), QPoint(10, 20)}) {
            xcb_client_message_event_t move{};
            move.response_type = XCB_CLIENT_MESSAGE;
            move.format = 32;
            move.window = fixture.id;
            move.type = fixture.client.atom("_NET_MOVERESIZE_WINDOW");
            move.data.data32[0] = XCB_GRAVITY_STATIC | 3U << 8U | 2U << 12U;
            move.data.data32[1] = static_cast<uint32_t>(elsewhere.x());
            move.data.data32[2] = static_cast<uint32_t>(elsewhere.y());
            xcb_send_event(fixture.client.connection(), 0, fixture.client.root(),
                           XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                           reinterpret_cast<const char *>(&move));
            fixture.client.sync();
            QVERIFY(waitFor([&] { return fixture.kwin.window(title).has_value(); }, patience));
            fixture.awaitPlace({1279, 719});
        }
        fixture.window->orderOut();
        QVERIFY(waitFor([&] { return !fixture.kwin.window(title); }, patience));
        fixture.window->orderFront();
        fixture.awaitPlace({1279, 719});
    }

    void closing_isForwarded()
    {
        ParkedFixture fixture;
        fixture.park({100, 50}, {1279, 719});
        int requests = 0;
        fixture.window->onCloseRequest = [&] { ++requests; };
        askToClose(fixture.client, fixture.id);
        QVERIFY(waitFor([&] { return requests == 1; }, patience));
        QVERIFY(fixture.window->isVisible());
    }
};

QTEST_MAIN(ParkedWindowTest)
#include "ParkedWindowTest.moc"
