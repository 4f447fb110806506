// SPDX-License-Identifier: MIT
#include "rig/Browser.h"
#include "rig/ColorWindow.h"
#include "rig/NumberedAnimation.h"
#include "rig/ProgramFixture.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QJsonArray>
#include <QTest>

#include <algorithm>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

// The display is 1280 x 1024 pixels; the area lies above the main window, left of the browser.
const QStringList shareArea{QStringLiteral("--area=20,744,640x260"), QStringLiteral("--share")};
constexpr QRect area(20, 20, 640, 260);
constexpr QRect pattern(20, 20, 320, 260); ///< moves; the rest of the area is still
constexpr QRgb green = 0xff20c040;
constexpr QRgb purple = 0xff8020c0;
constexpr QRgb paused = 0xff202024; ///< around the word
constexpr QPoint still(500, 130); ///< in the area
const QPoint beside(700, 900); ///< root pixels
constexpr int leastRate = 50; ///< frames a second
constexpr auto callPatience = std::chrono::seconds(30);

/** The one that the environment names, so that the same call is made under each. */
WindowManager chosenManager()
{
    const QByteArray name = qgetenv("TEST_WINDOW_MANAGER");
    const auto *const found = std::ranges::find_if(
        managerPrograms, [&](const auto &program) { return name == program.name; });
    return found != managerPrograms.end() ? found->manager : WindowManager::Openbox;
}

} // namespace

class ConferenceTest : public QObject
{
    Q_OBJECT

    ProgramFixture fixture_{chosenManager()};
    QTemporaryDir home_;
    ChildProcess animation_;
    std::optional<ColorWindow> background_;
    std::unique_ptr<Browser> browser_;

    QColor seen(QPoint place) const { return pixelIn(*browser_, place); }
    bool isSeen(QPoint place, QColor color) const
    {
        const bool isSo = waitFor([&] { return isAlike(seen(place), color); }, callPatience);
        if (!isSo) {
            qInfo() << "seen at" << place << seen(place) << "instead of" << color;
        }
        return isSo;
    }
    QSize size() const
    {
        const auto sides = browser_->ask(QStringLiteral("size()"));
        return {sides[0].toInt(), sides[1].toInt()};
    }
    void command(const char *option) const
    {
        QByteArray said;
        QVERIFY2(fixture_.launchAgain({QString::fromLatin1(option)}, &said) == 0, said);
    }
    bool isWatched(const char *answer) const
    {
        QByteArray status;
        return fixture_.launchAgain({QStringLiteral("--status")}, &status) == 0
            && status.contains(QByteArray("\"watched\":") + answer);
    }
    QString state() const { return browser_->ask(QStringLiteral("state()")).toString(); }

private Q_SLOTS:
    void initTestCase()
    {
        fixture_.input.moveTo(beside);
        fixture_.startBus();
        fixture_.start(shareArea);
        QVERIFY(waitFor([&] { return fixture_.outputWindow().has_value(); }, patience));

        QVERIFY(waitFor([&] { return isWatched("false"); }, patience));
        auto environment = fixture_.environment;
        environment.insert(QStringLiteral("HOME"), home_.path());
        const bool isFirefox = qgetenv("TEST_BROWSER") == "firefox";
        browser_ = (isFirefox ? startFirefox : startChromium)(
            {.environment = environment,
             .home = home_.path(),
             .page = QUrl::fromLocalFile(QStringLiteral(CALL_PAGE)),
             .window = QStringLiteral("Glimmerpane - Output")});
        browser_->share();
        if (chosenManager() == WindowManager::GnomeShell) { // which starts with its overview
            QVERIFY(fixture_.input.typeKey(keys::escape));
        }
        // Last, so that they are over the browser's window, wherever the manager has put that.
        background_
            = required(ColorWindow::show(fixture_.client, {.rectangle = area, .color = green}));
        animation_ = startAnimation(fixture_.environment, {.area = pattern});
        QVERIFY2(waitFor([&] { return state() == QStringLiteral("live"); }, callPatience),
                 qPrintable(state()));
    }
    void cleanupTestCase() { browser_.reset(); }

    void frames_haveTheAreasSizeAndPixels()
    {
        QVERIFY(waitFor([&] { return !size().isEmpty(); }, callPatience));
        QCOMPARE(size(), area.size());
        for (const QPoint place : {still, QPoint(345, 5), QPoint(634, 5), QPoint(634, 254)}) {
            QVERIFY(isSeen(place, green));
        }
    }

    void frames_followTheScreen()
    {
        std::optional<ColorWindow> window = required(ColorWindow::show(
            fixture_.client,
            {.rectangle = {area.topLeft() + still - QPoint(20, 20), QSize(40, 40)},
             .color = purple}));
        QVERIFY(isSeen(still, purple));
        window->setColor(0xff000000);
        QVERIFY(isSeen(still, Qt::black));
        window.reset();
        QVERIFY(isSeen(still, green));
    }

    void frames_showNothingOfTheFrame_aroundTheArea()
    {
        command("--frame=on");
        const auto bar = [&] {
            return required(fixture_.client.screenshot({area.right() + 2, 150, 1, 1})).pixel(0, 0);
        };
        QVERIFY(waitFor([&] { return (bar() & 0xffffff) == 0x007aff; }, patience));
        for (const QPoint place : {QPoint(639, 130), QPoint(500, 0), QPoint(500, 259)}) {
            QVERIFY(isSeen(place, green));
        }
        command("--frame=off");
    }

    void frames_come50TimesASecond()
    {
        const auto rate = [this] { return browser_->ask(QStringLiteral("rate()")).toInt(); };
        int best = 0;
        QVERIFY2(
            waitFor([&] { return (best = std::max(best, rate())) >= leastRate; }, callPatience),
            qPrintable(QString::number(best)));
        qInfo("%d frames a second", best);
    }

    void frames_showThePointer_andThePress()
    {
        fixture_.input.moveTo(area.topLeft() + still);
        // Inside an arrow, whose tip is at the pointer's place, or a cross, whose middle is there.
        const QPoint inArrow = still + QPoint(3, 8);
        const auto showsPointer
            = [&] { return !isAlike(seen(inArrow), green) || !isAlike(seen(still), green); };
        QVERIFY(waitFor(showsPointer, callPatience));
        const QPoint onRing = still + QPoint(29, 0);
        const auto showsRing = [&] {
            fixture_.input.click(area.topLeft() + still);
            const QColor color = seen(onRing);
            return color.blue() > color.green();
        };
        QVERIFY(waitFor(showsRing, callPatience));
        QVERIFY(isSeen(onRing, green));
        fixture_.input.moveTo(beside);
        QVERIFY(isSeen(inArrow, green));
    }

    void frames_followTheSession_inTheSameTrack()
    {
        const auto other = required(ColorWindow::show(
            fixture_.client, {.rectangle = {620, 740, 640, 260}, .color = purple}));
        command("--move=620,24");
        QVERIFY(isSeen(still, purple) && isSeen({10, 130}, purple));
        command("--move=620,24,320x260");
        QVERIFY(isSeen({80, 130}, Qt::black) && isSeen({560, 130}, Qt::black));
        QVERIFY(isSeen({320, 130}, purple));
        command("--pause");
        other.setColor(green);
        fixture_.input.moveTo({780, 870}); // which browsers without a new picture do not show
        for (int i = 0; i < 20; ++i) {
            QVERIFY(isAlike(seen({320, 130}), purple));
        }
        command("--blank");
        QVERIFY(isSeen({80, 130}, paused) && isSeen({320, 20}, paused));
        command("--resume");
        QVERIFY(isSeen({400, 60}, green) && isSeen({80, 130}, Qt::black));
        fixture_.input.moveTo(beside);
        command("--move=20,744,640x260");
        QVERIFY(isSeen({634, 254}, green));
        QCOMPARE(size(), area.size());
        QCOMPARE(state(), QStringLiteral("live"));
    }

    void frames_goOn_whileTheMainWindowIsAwayOrCovered()
    {
        const auto main = fixture_.mainWindow();
        QVERIFY(main);
        const auto cover = ColorWindow::show(
            fixture_.client, {.rectangle = *geometryOf(fixture_.client, *main), .color = purple});
        background_->setColor(purple);
        QVERIFY(isSeen(still, purple));
        constexpr std::uint32_t iconicState = 3; // ICCCM 4.1.4
        sendMessage(fixture_.client, *main, "WM_CHANGE_STATE", iconicState, fixture_.client.root());
        if (chosenManager() != WindowManager::I3) { // which has no such state
            const auto isIconic
                = [&] { return numberOf(fixture_.client, *main, "WM_STATE") == iconicState; };
            QVERIFY(waitFor(isIconic, patience));
        }
        background_->setColor(green);
        QVERIFY(isSeen(still, green));
        QCOMPARE(state(), QStringLiteral("live"));
    }

    void status_tellsWhetherTheCallWatches()
    {
        QVERIFY(isWatched("true"));
        browser_.reset();
        QVERIFY(waitFor([&] { return isWatched("false"); }, patience));
        command("--stop");
        QVERIFY(isWatched("null"));
    }
};

QTEST_GUILESS_MAIN(ConferenceTest)
#include "ConferenceTest.moc"
