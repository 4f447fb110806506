// SPDX-License-Identifier: MIT
#include "rig/Browser.h"
#include "rig/ColorWindow.h"
#include "rig/GnomeSession.h"
#include "rig/NumberedAnimation.h"
#include "rig/WaitFor.h"

#include <QJsonArray>
#include <QTest>

#include <algorithm>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr std::chrono::seconds patience{15};
constexpr std::chrono::seconds step{2}; ///< for what one click leads to
constexpr QRect area(20, 420, 320, 260); ///< desktop pixels; beside the portal's dialog
constexpr QRect pattern(20, 420, 160, 260); ///< moves; the rest of the area is still
constexpr QPoint stillPlaces[] = {{170, 10}, {310, 10}, {310, 250}}; ///< in the area
constexpr QRgb green = 0xff20c040;
constexpr QRgb purple = 0xff8020c0;
constexpr int leastRate = 25; ///< of the pattern's 30 frames a second

} // namespace

/** The program and a browser in a GNOME session on Wayland: a call as a person makes it. */
class GnomeConferenceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void call_showsTheArea()
    {
        GnomeSession session;
        const XClient client = required(XClient::connect(session.displayName()));
        const auto background
            = required(ColorWindow::show(client, {.rectangle = area, .color = green}));
        const auto animation = startAnimation(session.environment(), {.area = pattern, .rate = 30});
        const auto program = required(ChildProcess::start(
            {.program = QStringLiteral(GLIMMERPANE_PROGRAM),
             .arguments = {QStringLiteral("--backend=gnome"),
                           QStringLiteral("--area=20,40,320x260"), QStringLiteral("--share")},
             .environment = session.environment()}));
        const auto isShared
            = [&] { return session.window(QStringLiteral("Glimmerpane - Output")).has_value(); };
        QVERIFY2(waitFor(isShared, patience), program.output());

        const auto isWatched = [&](const char *answer) {
            auto asked = ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                              .arguments = {QStringLiteral("--status")},
                                              .environment = session.environment()});
            return asked && asked->waitForEnd(patience)
                && asked->output().contains(QByteArray("\"watched\":") + answer);
        };
        QVERIFY(waitFor([&] { return isWatched("false"); }, patience));
        const QTemporaryDir home;
        auto browser = startChromium({.environment = session.environment(),
                                      .home = home.path(),
                                      .page = QUrl::fromLocalFile(QStringLiteral(CALL_PAGE))});
        browser->share();
        const auto input = session.input();
        const auto dialog = session.portalDialog();
        // Where the shell places the browser, once it shows what it got.
        const QPoint shareInBrowser = dialog.firstMonitor ? QPoint(445, 612) : QPoint(835, 620);
        const auto isDialogShown = [&] { return session.isPortalDialogShown(); };
        const auto sides = [&] { return browser->ask(QStringLiteral("size()")).toArray(); };
        const QJsonArray wanted{area.width(), area.height()};
        // A dialog that still moves takes clicks too late, perhaps for what is below it.
        const auto settle = [&] {
            auto monitor = session.recordMonitor();
            const auto look = [&] { return monitor->picture().copy(dialog.place); };
            QImage calm;
            while (waitFor([&] { return look() != calm; }, std::chrono::milliseconds(600))) {
                calm = look();
            }
        };
        // GNOME 43 asks once for the browser's preview, and once more for the call.
        const auto isInCall = [&] {
            if (isDialogShown()) {
                settle();
                input.click(dialog.secondWindow);
                settle();
                input.click(dialog.share);
                waitFor([&] { return !isDialogShown(); }, step);
            } else {
                input.click(shareInBrowser);
                waitFor([&] { return isDialogShown() || sides() == wanted; }, step);
            }
            return sides() == wanted;
        };
        QVERIFY2(waitFor(isInCall, browserPatience),
                 qPrintable(browser->ask(QStringLiteral("state()")).toString()));

        const auto isSeen = [&](QRgb color) {
            return std::ranges::all_of(stillPlaces, [&](QPoint place) {
                return isAlike(pixelIn(*browser, place), QColor(color));
            });
        };
        QVERIFY(waitFor([&] { return isSeen(green); }, patience));
        background.setColor(purple);
        QVERIFY(waitFor([&] { return isSeen(purple); }, patience));
        const auto rate = [&] { return browser->ask(QStringLiteral("rate()")).toInt(); };
        int best = 0;
        QVERIFY2(waitFor([&] { return (best = std::max(best, rate())) >= leastRate; }, patience),
                 qPrintable(QString::number(best)));
        qInfo("%d frames a second", best);
        QVERIFY(waitFor([&] { return isWatched("null"); }, patience));
        browser.reset();
        QVERIFY(waitFor([&] { return isWatched("false"); }, patience));
    }
};

QTEST_GUILESS_MAIN(GnomeConferenceTest)
#include "GnomeConferenceTest.moc"
