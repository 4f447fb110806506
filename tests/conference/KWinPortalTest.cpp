// SPDX-License-Identifier: MIT
#include "rig/Browser.h"
#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/KWinClient.h"
#include "rig/KWinSession.h"
#include "rig/PictureComparison.h"

#include <QJsonArray>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr std::chrono::seconds patience{15};
constexpr QRect area(20, 420, 320, 260); ///< desktop pixels; beside the dialogs
constexpr QRgb green = 0xff20c040;
constexpr QRgb purple = 0xff8020c0;
const QString dialogTitle = QStringLiteral("Screen Sharing");
const QString outputTitle = QStringLiteral("Glimmerpane - Output");

/** The program in a session of KDE's kind, with KDE's portal. */
struct PortalFixture {
    const KWinSession session;
    const KWinClient kwin{session.socket()};
    const XClient client = required(XClient::connect(session.displayName()));
    const ColorWindow background
        = required(ColorWindow::show(client, {.rectangle = area, .color = green}));

    ChildProcess launch(const QStringList &arguments) const
    {
        return required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                             .arguments = arguments,
                                             .environment = session.environment()}));
    }
    ChildProcess share(const QString &backend) const
    {
        kwin.moveTo({1200, 700}); // away from the area
        return launch({QStringLiteral("--backend=") + backend,
                       QStringLiteral("--area=20,40,320x260"), QStringLiteral("--share")});
    }
    void click(QPoint place) const
    {
        kwin.moveTo(place);
        kwin.press();
        kwin.release();
    }
    bool isAsked() const { return kwin.window(dialogTitle).has_value(); }
    /** Clicks on what is at this place of the portal's dialog, which ends it. */
    bool answer(QPoint place) const
    {
        const auto takesClick = [&] {
            const auto dialog = kwin.window(dialogTitle);
            if (dialog && !dialog->geometry.isEmpty()) {
                click(dialog->geometry.topLeft() + place);
            }
            return !dialog;
        };
        return waitFor([&] { return isAsked(); }, patience)
            && waitFor(takesClick, patience); // which it does not before it is drawn
    }
    bool showsArea() const
    {
        const auto output = [this] {
            const auto window = findWindow(client, outputTitle, Listing::All);
            return windowPicture(client, window.value_or(XCB_WINDOW_NONE)).value_or(QImage());
        };
        return becomeEqual(output, [this] { return session.screenshot(area); }, patience);
    }
};

} // namespace

/** What KDE's own dialog gives, answered by KWin's input. */
class KWinPortalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void monitor_isAskedForOnce()
    {
        constexpr QPoint monitor(144, 301); // of the dialog
        const PortalFixture fixture;
        const auto program = fixture.share(QStringLiteral("portal"));
        QVERIFY2(fixture.answer(monitor), program.output());
        QVERIFY2(fixture.showsArea(), program.output());
        fixture.background.setColor(purple);
        QVERIFY2(fixture.showsArea(), program.output());
        for (const char *option : {"--stop", "--share"}) {
            auto other = fixture.launch({QString::fromLatin1(option)});
            QVERIFY(other.waitForEnd(patience));
            QCOMPARE(other.output(), QByteArray());
        }
        fixture.background.setColor(green);
        QVERIFY2(fixture.showsArea(), program.output());
        QVERIFY(!fixture.isAsked());
    }

    void call_showsTheArea()
    {
        constexpr QPoint secondWindow(428, 184); // of the dialog
        constexpr QPoint shareInBrowser(439, 581); // of its window
        const PortalFixture fixture;
        const auto program = fixture.share(QStringLiteral("kwin"));
        QVERIFY2(fixture.showsArea(), program.output());
        const QTemporaryDir home;
        const auto browser
            = startChromium({.environment = fixture.session.environment(),
                             .home = home.path(),
                             .page = QUrl::fromLocalFile(QStringLiteral(CALL_PAGE))});
        browser->share();
        QVERIFY(fixture.answer(secondWindow));
        const auto isInCall = [&] {
            const auto window = fixture.kwin.window(QStringLiteral("Call - Chromium"));
            fixture.click((window ? window->geometry.topLeft() : QPoint()) + shareInBrowser);
            return browser->ask(QStringLiteral("size()")).toArray()
                == QJsonArray{area.width(), area.height()};
        };
        QVERIFY2(waitFor(isInCall, browserPatience),
                 qPrintable(browser->ask(QStringLiteral("state()")).toString()));
        for (const QRgb color : {green, purple}) {
            fixture.background.setColor(color);
            const auto isSeen = [&] { return isAlike(pixelIn(*browser, {310, 250}), color); };
            QVERIFY(waitFor(isSeen, patience));
        }
    }
};

QTEST_GUILESS_MAIN(KWinPortalTest)
#include "KWinPortalTest.moc"
