// SPDX-License-Identifier: MIT
#include "platform/Geometry.h"
#include "rig/CapturedWindow.h"
#include "rig/DamageWatch.h"
#include "rig/NumberedAnimation.h"
#include "rig/OutputReader.h"
#include "rig/PictureComparison.h"
#include "tests/desktop/SelectorFixture.h"

#include <QPainter>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect source(500, 150, 320, 240);
constexpr QRect elsewhere(900, 500, 320, 240);
constexpr QPoint mainWindowPlace(20, 560);
constexpr QPoint aside(1200, 20); ///< in no area
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;
constexpr QRgb black = 0xff000000;

/** The program while it shares an area of a still screen. All places are root pixels. */
struct SessionFixture : SelectorFixture {
    xcb_window_t startSharing()
    {
        startBus();
        input.moveTo(aside);
        startWith(source, mainWindowPlace, true);
        require(showsArea(source), "the area is not to be seen");
        return *outputWindow();
    }

    /** The argument of --move, or --area, for this rectangle. */
    QString text(const QRect &place, bool isResized = true) const
    {
        const int below = client.rootSize().height() - place.y() - place.height();
        const QString origin = QStringLiteral("%1,%2").arg(place.x()).arg(below);
        return isResized ? origin + QStringLiteral(",%1x%2").arg(place.width()).arg(place.height())
                         : origin;
    }
    QImage shown() { return required(output.picture()).convertToFormat(QImage::Format_RGB32); }
    /** What the window is to show of a rectangle. */
    QImage expected(const QRect &place) const
    {
        QImage window(source.size(), QImage::Format_RGB32);
        window.fill(black);
        const QImage pixels = required(client.screenshot(place));
        QPainter(&window).drawImage(aspectFit(place.size(), window.rect()),
                                    withCursor(pixels, place.topLeft(), *currentCursor(client)));
        return window;
    }
    void command(const QString &arguments, int exitCode = 0, const char *says = "") const
    {
        QByteArray said;
        QCOMPARE(launchAgain(arguments.split(u' '), &said), exitCode);
        QVERIFY2(said.contains(says) && said.isEmpty() == (*says == '\0'), said);
    }

    const ColorWindow left
        = required(ColorWindow::show(client, {.rectangle = {500, 150, 160, 240}, .color = red}));
    const ColorWindow right
        = required(ColorWindow::show(client, {.rectangle = {660, 150, 160, 260}, .color = green}));
    const ColorWindow other
        = required(ColorWindow::show(client, {.rectangle = {910, 520, 200, 300}, .color = blue}));
    CapturedWindow output = required(CapturedWindow::open(client, startSharing()));
};

/** A light text in the middle of a dark colour. */
bool isPauseShown(const QImage &picture)
{
    const QRect middle = picture.rect().adjusted(50, 80, -50, -80);
    int light = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool isLight = qGray(picture.pixel(x, y)) > 128;
            light += isLight ? 1 : 0;
            if (isLight && !middle.contains(x, y)) {
                return false;
            }
        }
    }
    return light > 500;
}

} // namespace

/** What can be done to a session that is running. */
class SessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void move_showsTheNewPlace_withoutAnythingInBetween()
    {
        SessionFixture fixture;
        auto watch
            = required(DamageWatch::open(fixture.server.displayName(), fixture.output.window()));
        const QRect plain(520, 200, 80, 60); // a fourth of the window's size
        QRect shared = source;
        fixture.input.moveTo({640, 300}); // it is in some of these
        for (const QRect &place :
             {QRect(480, 130, 320, 240), elsewhere, QRect(1000, 900, 320, 240), source,
              QRect(500, 150, 160, 240), QRect(500, 150, 320, 60), plain, source}) {
            QVERIFY(waitFor([&] { return fixture.shown() == fixture.expected(shared); }, patience));
            watch.take();
            const QImage before = fixture.shown();
            const bool isResized = std::exchange(shared, place).size() != place.size();
            auto mover = required(ChildProcess::start(
                {.program = fixture.executable,
                 .arguments = {QStringLiteral("--move"), fixture.text(place, isResized)},
                 .environment = fixture.environment}));
            const QImage after = fixture.expected(place);
            QVERIFY(before != after);
            QImage seen = before;
            while (seen != after) {
                QVERIFY(watch.take(patience));
                const QImage now = fixture.shown();
                QVERIFY(now == after || (now == before && seen == before));
                seen = now;
            }
            QVERIFY(mover.waitForEnd(patience));
            QCOMPARE(mover.exitCode(), 0);
        }
    }

    void pointerAndRing_areScaled_withTheArea()
    {
        SessionFixture fixture;
        fixture.command(QStringLiteral("--move ") + fixture.text({520, 200, 80, 60}));
        fixture.input.moveTo({560, 230}); // the middle of what is four times as large now
        const auto pixel = [&](int x, int y) { return QColor(fixture.shown().pixel(x, y)); };
        QVERIFY(waitFor([&] { return pixel(162, 122) != QColor(red); }, patience));
        const auto showsRing = [&] {
            fixture.input.click({560, 230});
            return waitFor([&] { return pixel(160 + 4 * 29, 120).blue() > 100; },
                           std::chrono::milliseconds(300));
        };
        QVERIFY(waitFor(showsRing, patience));
        fixture.input.moveTo(aside);
        fixture.command(QStringLiteral("--move ") + fixture.text(source));
        fixture.input.moveTo(source.center());
        QVERIFY(fixture.showsArea(source)); // not scaled any more
    }

    void move_isStoredOnlyWhereAsked_andRefusedWithTheReason()
    {
        SessionFixture fixture;
        const QString place = fixture.text(elsewhere);
        fixture.command(QStringLiteral("--move ") + place);
        QVERIFY(fixture.showsArea(elsewhere));
        fixture.command(QStringLiteral("--status"), 0,
                        R"("area":{"x":500.0,"y":634.0,"width":320.0,"height":240.0},)"
                        R"("sharing":true,"sharedArea":{"x":900.0,"y":284.0,)");
        QTRY_COMPARE(fixture.savedArea(), (CaptureFrame{500, 634, 320, 240}));
        for (const auto &[refused, reason] : {std::pair("5000,5000", "not on any display"),
                                              {"5,5,0x10", "is empty"},
                                              {"5,5,40000x10", "too large"},
                                              {"nan,5", "must be numbers"},
                                              {"5,5,infx5", "finite"}}) {
            fixture.command(QStringLiteral("--save --move ") + QLatin1String(refused), 1, reason);
        }
        QVERIFY(fixture.showsArea(elsewhere));
        // What is typed is for the next time.
        QVERIFY(fixture.typeArea({1, 2, 300, 200}));
        QVERIFY(fixture.showsArea(elsewhere));
        fixture.command(QStringLiteral("--save --move ") + place);
        QCOMPARE(fixture.savedArea(), (CaptureFrame{900, 284, 320, 240}));
        fixture.command(QStringLiteral("--status"), 0, R"({"area":{"x":900.0,)");
        QVERIFY(fixture.stopSharing());
        for (const char *option :
             {"--move=1,2", "--pause", "--blank", "--resume", "--toggle-pause"}) {
            fixture.command(QString::fromLatin1(option), 1, "Nothing is being shared.");
        }
    }

    void pause_letsNothingThrough_untilItEnds()
    {
        SessionFixture fixture;
        const auto animation
            = startAnimation(fixture.environment, {.area = source.adjusted(0, 0, -20, -20)});
        const auto screen = required(
            CapturedWindow::open(fixture.client, fixture.client.root(), PictureOf::Screen));
        for (const char *option : {"--pause", "--blank", "--toggle-pause"}) {
            awaitMotion(fixture.output);
            fixture.command(QString::fromLatin1(option));
            auto watch = required(
                DamageWatch::open(fixture.server.displayName(), fixture.output.window()));
            const QImage kept = fixture.shown();
            for (int turn = 0; turn < 3; ++turn) {
                for (int i = 0; i < 40; ++i) {
                    fixture.input.click(source.topLeft() + QPoint(i * 8, i * 6));
                    QCOMPARE(fixture.shown(), kept);
                }
                awaitMotion(screen, source.topLeft());
            }
            fixture.command(QStringLiteral("--status"), 0, R"("paused":true)");
            QVERIFY(!watch.take() && !fixture.isCapturing());
            // What is lost of the picture does not come from the screen.
            xcb_clear_area(fixture.client.get(), 1, fixture.output.window(), 0, 0, 50, 50);
            fixture.client.sync();
            const bool isPlain = option == QByteArray("--blank");
            QVERIFY(!isPlain || isPauseShown(kept));
            QVERIFY(waitFor([&] { return (fixture.shown() == kept) == isPlain; }, patience));
            fixture.command(QString::fromLatin1(isPlain ? "--toggle-pause" : "--resume"));
        }
        awaitMotion(fixture.output);
    }

    void move_isShownAfterThePause()
    {
        SessionFixture fixture;
        fixture.command(QStringLiteral("--pause"));
        const QImage kept = fixture.shown();
        auto watch
            = required(DamageWatch::open(fixture.server.displayName(), fixture.output.window()));
        const QRect wide(500, 150, 320, 60);
        fixture.command(QStringLiteral("--move ") + fixture.text(wide));
        QVERIFY(!watch.take() && fixture.shown() == kept);
        fixture.command(QStringLiteral("--resume"));
        QVERIFY(waitFor([&] { return fixture.shown() == fixture.expected(wide); }, patience));
        fixture.command(QStringLiteral("--blank"));
        fixture.command(QStringLiteral("--stop"));
        QVERIFY(!fixture.outputWindow());
        fixture.command(QStringLiteral("--share"));
        QVERIFY(fixture.showsArea(source));
    }
};

QTEST_GUILESS_MAIN(SessionTest)
#include "SessionTest.moc"
