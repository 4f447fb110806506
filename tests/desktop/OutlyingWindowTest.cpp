// SPDX-License-Identifier: MIT
#include "platform/pipewire/FlowWatch.h"
#include "platform/x11/OutlyingWindowX11.h"
#include "rig/ColorWindow.h"
#include "rig/GnomeSession.h"
#include "rig/InputInjector.h"
#include "rig/PictureComparison.h"
#include "rig/XWindows.h"
#include "tests/desktop/WindowSign.h"

#include <QElapsedTimer>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr auto patience = std::chrono::seconds(5);
constexpr QSize size(400, 300);
constexpr QRect belowTopBar(0, 40, 1280, 680); ///< whose clock and indicators change by themselves
const QString title = QStringLiteral("Output");

/** The window in GNOME's session, and a client that draws into it. */
struct OutlyingFixture {
    OutlyingFixture()
        : client(required(XClient::connect(session.displayName())))
    {
        makeWindow();
    }

    void close()
    {
        layer.reset();
        window.reset();
    }
    void makeWindow()
    {
        close();
        window = x11::OutlyingWindowX11::create(title, size, pipewire::watchFlow).value();
        window->orderFront();
        // The shell lists it before the server has mapped it; until then nothing can be drawn.
        const auto isThere = [this] {
            id = findWindow(client, title, Listing::All).value_or(XCB_WINDOW_NONE);
            return isListed() && isOffScreen() && isViewable(client, id);
        };
        require(waitFor(isThere, patience), "it is not there, or on the screen");
        layer = window->makeDisplayLayer().value();
    }

    bool isListed() const { return session.window(title).has_value(); }
    bool isOffScreen() const
    {
        const auto place = geometryOf(client, id);
        return place && !place->intersects({0, 0, 0x7fff, 0x7fff});
    }
    GnomeStream record() const { return session.recordWindow(session.window(title)->id); }

    void draw(QRgb color) const
    {
        layer->showPlain(Qt::black,
                         drawn(color).convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
    static QImage drawn(QRgb color) { return windowSign(size, color); }

    /** Returns once the desktop, which is still animated at times, has its final look. */
    QImage stillScreen(GnomeStream &monitor) const
    {
        QImage seen;
        QElapsedTimer since;
        const auto isStill = [&] {
            const QImage now = monitor->picture().copy(belowTopBar);
            if (now.isNull() || now != seen) {
                seen = now;
                since.start();
            }
            return since.elapsed() > 500;
        };
        require(waitFor(isStill, patience), "the desktop does not come to rest");
        return seen;
    }

    /** Returns once the shell paints no more. */
    static void awaitRest(GnomeStream &monitor)
    {
        int painted = -1;
        QElapsedTimer since;
        const auto isAtRest = [&] {
            if (const int now = monitor->pictures(); std::exchange(painted, now) != now) {
                since.start();
            }
            return since.elapsed() > 700;
        };
        require(waitFor(isAtRest, 2 * patience), "the desktop does not come to rest");
    }

    GnomeSession session;
    XClient client;
    std::unique_ptr<OutputWindow> window;
    std::unique_ptr<DisplayLayer> layer;
    xcb_window_t id = XCB_WINDOW_NONE;
};

} // namespace

class OutlyingWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void window_isListedAndUnseen_butViewersHaveItsPicture()
    {
        OutlyingFixture fixture;
        fixture.close();
        auto monitor = fixture.session.recordMonitor();
        fixture.stillScreen(monitor);
        monitor->watch(belowTopBar);
        const int changes = monitor->changes();
        for (const QRgb color : {0xffff0000, 0xff00ff00, 0xff0000ff}) {
            fixture.makeWindow();
            auto viewer = fixture.record();
            fixture.draw(color);
            QVERIFY(becomeEqual([&] { return viewer->picture(); },
                                [&] { return fixture.drawn(color); }, patience));
            fixture.window->orderOut();
            QVERIFY(waitFor([&] { return !fixture.isListed(); }, patience));
            fixture.window->orderFront();
            QVERIFY(waitFor([&] { return fixture.isListed(); }, patience));
            const auto listed = fixture.session.window(title);
            QCOMPARE(listed->windowClass, QStringLiteral("Glimmerpane"));
            QVERIFY(!listed->hasFocus);
        }
        fixture.stillScreen(monitor);
        QCOMPARE(monitor->changes(), changes);
    }

    void picture_comesToANewViewer_whenNothingMoves()
    {
        OutlyingFixture fixture;
        auto monitor = fixture.session.recordMonitor();
        for (int i = 0; i < 5; ++i) {
            const QRgb color = qRgb(40 * i, 200 - 40 * i, 100);
            fixture.draw(color);
            fixture.awaitRest(monitor);
            auto viewer = fixture.record();
            QVERIFY2(becomeEqual([&] { return viewer->picture(); },
                                 [&] { return fixture.drawn(color); }, patience),
                     qPrintable(QStringLiteral("the %1th time").arg(i)));
        }
    }

    void window_staysUnseen_whenTheUserActivatesIt()
    {
        OutlyingFixture fixture;
        int activations = 0;
        fixture.window->onActivated = [&] { ++activations; };
        fixture.draw(0xffff0000);
        auto viewer = fixture.record();
        auto monitor = fixture.session.recordMonitor();
        monitor->watch(belowTopBar);
        const auto other = required(ColorWindow::show(fixture.client,
                                                      {.rectangle = {500, 300, 200, 100},
                                                       .color = 0xff00ffff,
                                                       .kind = ColorWindow::Kind::Managed}));
        const QImage before = fixture.stillScreen(monitor);
        constexpr uint32_t pager = 2; // EWMH: who asks
        sendMessage(fixture.client, fixture.id, "_NET_ACTIVE_WINDOW", pager, fixture.client.root());
        QVERIFY(waitFor([&] { return activations == 1; }, patience));
        QVERIFY(waitFor([&] { return fixture.stillScreen(monitor) == before; }, patience));
        QVERIFY(fixture.isOffScreen());
        // As when monitors change, it is moved onto the screen.
        const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(fixture.client.connection(), fixture.id, XCB_CW_EVENT_MASK,
                                     &events);
        setGeometry(fixture.client, fixture.id, {{300, 200}, size});
        const auto wasShown = [&] {
            while (const x11::Reply<xcb_generic_event_t> event{
                xcb_poll_for_event(fixture.client.connection())}) {
                const auto &moved = reinterpret_cast<xcb_configure_notify_event_t &>(*event);
                if ((event->response_type & 0x7fU) == XCB_CONFIGURE_NOTIFY && moved.x > 0) {
                    return true;
                }
            }
            return false;
        };
        QVERIFY(waitFor(wasShown, patience));
        QVERIFY(waitFor([&] { return fixture.isListed() && fixture.isOffScreen(); }, patience));
        QVERIFY(waitFor([&] { return fixture.stillScreen(monitor) == before; }, patience));
        fixture.draw(0xff00ff00);
        QVERIFY(becomeEqual([&] { return viewer->picture(); },
                            [&] { return fixture.drawn(0xff00ff00); }, patience));
    }

    void closing_isForwarded()
    {
        OutlyingFixture fixture;
        int requests = 0;
        fixture.window->onCloseRequest = [&] { ++requests; };
        askToClose(fixture.client, fixture.id);
        QVERIFY(waitFor([&] { return requests == 1; }, patience));
        QVERIFY(fixture.window->isVisible() && fixture.isOffScreen());
    }
};

QTEST_MAIN(OutlyingWindowTest)
#include "OutlyingWindowTest.moc"
