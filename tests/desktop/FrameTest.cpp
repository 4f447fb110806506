// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/DamageWatch.h"
#include "rig/SettingsPortal.h"
#include "tests/desktop/SelectorFixture.h"

#include <QPainter>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect shared(500, 150, 320, 240);
constexpr QRgb blue = markColor;
constexpr QRgb blueOnDark = 0xff0a84ff;
constexpr QRgb orange = 0xffff9500;
constexpr QRgb ground = 0xff807060;
constexpr QRgb white = 0xffffffff;

/** The program while it shares an area, before it shows a frame. All places are root pixels. */
struct FrameFixture : SelectorFixture {
    explicit FrameFixture(const QRect &place = shared, WindowManager manager = WindowManager::None,
                          int scale = 1)
        : SelectorFixture(manager, scale, {1280 * scale, 1024 * scale})
        , below(required(ColorWindow::show(
              client, {.rectangle = QRect({}, client.rootSize()), .color = ground})))
        , inside(required(ColorWindow::show(
              client, {.rectangle = {600 * scale, 200 * scale, 50, 60}, .color = 0xff30a050})))
    {
        startBus();
        input.moveTo(client.rootSize().width() * QPoint(1, 0) + QPoint(-2, 700));
        startWith(place, {20, 560}, true);
        require(waitFor([&] { return outputWindow().has_value(); }, patience), "no output");
        for (const auto *window : {&below, &inside}) { // over the main window, which changes
            const uint32_t above = XCB_STACK_MODE_ABOVE;
            xcb_configure_window(client.get(), window->id(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
        }
        client.sync();
        output = required(CapturedWindow::open(client, *outputWindow()));
    }

    void command(const char *arguments) const
    {
        QByteArray said;
        QVERIFY2(launchAgain(QString::fromLatin1(arguments).split(u' '), &said) == 0, said);
    }
    QImage screen() const
    {
        return required(client.screenshot({{}, client.rootSize()}))
            .convertToFormat(QImage::Format_RGB32);
    }
    /** Where a handle of 48 x 14 points is. */
    QRect handle(const QRect &place) const
    {
        const int s = scaleFactor;
        const QRect whole({}, client.rootSize());
        const QRect bars = place.adjusted(-4 * s, -4 * s, 4 * s, 4 * s);
        const QPoint from = (place & whole).center() - QPoint(24, 24) * s;
        for (const QRect &at : {QRect(from.x(), bars.top() - 14 * s, 48 * s, 14 * s),
                                QRect(from.x(), bars.bottom() + 1, 48 * s, 14 * s),
                                QRect(bars.left() - 14 * s, from.y(), 14 * s, 48 * s),
                                QRect(bars.right() + 1, from.y(), 14 * s, 48 * s)}) {
            if (whole.contains(at)) {
                return at;
            }
        }
        return {};
    }
    /** The screen with a frame of this colour, but for the handle's grip, which is white. */
    bool shows(const QImage &bare, const QRect &place, QRgb color) const
    {
        const int s = scaleFactor;
        QImage expected = bare;
        const QRect grip = handle(place);
        {
            QPainter painter(&expected);
            painter.fillRect(place.adjusted(-4 * s, -4 * s, 4 * s, 4 * s), QColor(white));
            painter.fillRect(place.adjusted(-3 * s, -3 * s, 3 * s, 3 * s), QColor(color));
            painter.drawImage(place, bare, place);
            if (!grip.isEmpty()) {
                const bool isWide = grip.width() > grip.height();
                painter.fillRect(grip, QColor(white));
                painter.fillRect(grip.adjusted(s, s, -s, -s), QColor(color));
                for (const int i : {-8 * s, 0, 8 * s}) {
                    const QPoint middle((grip.width() - 3 * s) / 2, (grip.height() - 3 * s) / 2);
                    const QPoint at = middle + (isWide ? QPoint(i, 0) : QPoint(0, i));
                    painter.fillRect(QRect(grip.topLeft() + at, QSize(3, 3) * s), QColor(white));
                }
            }
        }
        const QRect near = place.adjusted(-60, -60, 60, 60) & bare.rect();
        const auto isSo = [&] { return screen().copy(near) == expected.copy(near); };
        const bool result = waitFor(isSo, patience);
        if (!result || qEnvironmentVariableIsSet("FRAME_PICTURES")) {
            static int count = 0;
            const QString name = QStringLiteral("frame-%1-%2.png").arg(++count);
            screen().save(name.arg(QLatin1String("seen")));
            expected.save(name.arg(QLatin1String("expected")));
        }
        return result;
    }
    QImage shown() { return required(output->picture()); }

    const ColorWindow below;
    const ColorWindow inside;
    std::optional<CapturedWindow> output;
};

} // namespace

/** The frame around the area while it is shared. */
class FrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frame_isAroundTheArea_andChangesNothingInIt()
    {
        using Manager = WindowManager;
        for (const auto &[place, manager, scale] : {std::tuple(shared, Manager::None, 1),
                                                    {{0, 0, 320, 240}, Manager::None, 1},
                                                    {{900, 0, 380, 1024}, Manager::None, 1},
                                                    {{0, 0, 1280, 1024}, Manager::None, 1},
                                                    {{0, 0, 1280, 300}, Manager::None, 1},
                                                    {{1000, 150, 640, 480}, Manager::None, 2},
                                                    {shared, Manager::OpenboxAndPicom, 1}}) {
            // As startWith() takes it, whose scale is 1.
            const QRect points(place.topLeft() / scale + QPoint(0, (scale - 1) * 1024),
                               place.size() / scale);
            FrameFixture fixture(points, manager, scale);
            QVERIFY(fixture.showsArea(place));
            const QImage bare = fixture.screen();
            const QImage before = fixture.shown();
            auto watch = required(
                DamageWatch::open(fixture.server.displayName(), *fixture.outputWindow()));
            fixture.command("--frame on");
            QVERIFY(fixture.shows(bare, place, blue));
            fixture.command("--frame off");
            QVERIFY(waitFor([&] { return fixture.screen() == bare; }, patience));
            fixture.command("--frame on");
            QVERIFY(fixture.shown() == before);
            QVERIFY(manager != Manager::None || !watch.take()); // a compositor draws anew
            fixture.command("--pause");
            QVERIFY(fixture.shows(bare, place, orange));
            fixture.command("--resume");
            QVERIFY(fixture.shows(bare, place, blue));
            QVERIFY(fixture.shown() == before);
            fixture.command("--stop");
            QVERIFY(waitFor([&] { return fixture.screen() == bare; }, patience));
        }
    }

    void clicksOnTheBars_reachTheWindowBelow()
    {
        const FrameFixture fixture;
        const QImage bare = fixture.screen();
        fixture.command("--frame on");
        QVERIFY(fixture.shows(bare, shared, blue));
        const uint32_t presses = XCB_EVENT_MASK_BUTTON_PRESS;
        xcb_change_window_attributes(fixture.client.get(), fixture.below.id(), XCB_CW_EVENT_MASK,
                                     &presses);
        for (const auto &[place, reaches] : {std::pair(shared.topLeft() + QPoint(20, -2), true),
                                             {shared.bottomRight() + QPoint(2, -9), true},
                                             {shared.topLeft() - QPoint(4, 4), true},
                                             {shared.bottomLeft() + QPoint(9, 3), true},
                                             {fixture.handle(shared).center(), false}}) {
            fixture.input.click(place);
            int pressed = 0;
            while (xcb_generic_event_t *const event = xcb_poll_for_event(fixture.client.get())) {
                pressed += (event->response_type & 0x7f) == XCB_BUTTON_PRESS ? 1 : 0;
                std::free(event);
            }
            QCOMPARE(pressed == 1, reaches);
        }
        QCOMPARE(fixture.cursorAt(fixture.handle(shared).center()),
                 fixture.themeCursor({"openhand", "grab", "hand1"}));
    }

    void handle_movesTheArea_whichNeverShowsTheFrame()
    {
        FrameFixture fixture;
        const QImage bare = fixture.screen();
        fixture.command("--frame on");
        QVERIFY(fixture.shows(bare, shared, blue));
        auto watch
            = required(DamageWatch::open(fixture.server.displayName(), *fixture.outputWindow()));
        QRect place = shared;
        for (const auto &[way, left] : {std::pair(QPoint(37, 21), QPoint(37, 21)),
                                        {{-61, 90}, {-61, 90}},
                                        {{5, -100}, {5, -100}},
                                        {{600, -700}, {479, -149}},
                                        {{-1200, 900}, {-960, 761}}}) {
            const QPoint from = fixture.handle(place).center();
            const QRect next = place.translated(left);
            fixture.input.moveTo(from);
            fixture.input.press();
            fixture.command("--status"); // by now it knows that the press was not in the area
            for (int step = 1; step <= 20; ++step) {
                fixture.input.moveTo(from + way * step / 20);
                if (watch.take(std::chrono::milliseconds(20))) {
                    const QImage picture = fixture.shown();
                    for (int y = 0; y < picture.height(); ++y) {
                        for (int x = 0; x < picture.width(); ++x) {
                            QVERIFY((picture.pixel(x, y) | 0xff000000) != blue);
                        }
                    }
                }
            }
            fixture.input.release();
            fixture.input.moveTo({1278, 700});
            place = next;
            QVERIFY(fixture.shows(bare, place, blue));
            QVERIFY(fixture.showsArea(place));
        }
        QTRY_COMPARE(fixture.savedArea(), (CaptureFrame{500, 634, 320, 240}));
    }

    void frame_followsTheColorScheme_andThePartOfTheAreaThatIsSeen()
    {
        const FrameFixture fixture;
        const QImage bare = fixture.screen();
        fixture.command("--frame on");
        QVERIFY(fixture.shows(bare, shared, blue));
        SettingsPortal portal(fixture.bus->address());
        for (const uint scheme :
             {SettingsPortal::dark, SettingsPortal::light, SettingsPortal::dark}) {
            portal.change(scheme);
            QVERIFY(
                fixture.shows(bare, shared, scheme == SettingsPortal::dark ? blueOnDark : blue));
        }
        fixture.command("--move 1100,634,600x240");
        QVERIFY(fixture.shows(bare, {1100, 150, 600, 240}, blueOnDark));
    }

    void frame_isRemembered_followsMoves_andGoesWithTheProgram()
    {
        FrameFixture fixture;
        const QImage bare = fixture.screen();
        fixture.command("--frame on");
        fixture.command("--move 600,500,300x200");
        QVERIFY(fixture.shows(bare, {600, 324, 300, 200}, blue));
        fixture.end();
        fixture.startWith(shared, {20, 560}, true);
        QVERIFY(fixture.shows(bare, shared, blue));
        fixture.program.kill();
        QVERIFY(waitFor(
            [&] {
                return fixture.screen().copy(500, 100, 500, 400) == bare.copy(500, 100, 500, 400);
            },
            patience));
    }
};

QTEST_GUILESS_MAIN(FrameTest)
#include "FrameTest.moc"
