// SPDX-License-Identifier: MIT
#include "tests/desktop/GnomeFixture.h"

#include <QPainter>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QPoint emptyPlace(1100, 640); ///< in the area

/** A place on the left bar of an area's frame. */
QPoint bar(const QRect &place)
{
    return {place.left() - 2, place.center().y()};
}

} // namespace

/** The program in a GNOME session on Wayland. */
class GnomeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void output_showsTheArea_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addRow("gnome") << QStringLiteral("gnome");
        QTest::addRow("portal") << QStringLiteral("portal");
    }
    void output_showsTheArea()
    {
        QFETCH(const QString, backend);
        GnomeFixture fixture(backend);
        fixture.share();
        QVERIFY2(fixture.showsArea(), fixture.program.output());
        fixture.changing.setColor(0xff0000ff);
        QVERIFY(fixture.showsArea());
        const auto corner = [](const QImage &picture) {
            return picture.copy(QRect(emptyPlace - area.topLeft(), QSize(40, 40)));
        };
        const QImage empty = corner(fixture.output());
        fixture.input.moveTo(emptyPlace);
        QVERIFY(waitFor([&] { return corner(fixture.output()) != empty; }, patience));
        QVERIFY2(fixture.showsArea(), fixture.program.output());
        fixture.input.moveTo({100, 600});
        QVERIFY(waitFor([&] { return corner(fixture.output()) == empty; }, patience));
        const QByteArray status = fixture.command("--status");
        QVERIFY2(status.contains(backend.toUtf8()) && status.contains(R"("clicks":"none")"),
                 status);

        const QRect moved = area.translated(-20, -40);
        fixture.command("--move=900,80");
        QVERIFY2(fixture.showsArea(moved), fixture.program.output());
        fixture.command("--pause");
        const QImage kept = fixture.output();
        fixture.changing.setColor(0xffffff00);
        const auto isYellow
            = [&] { return fixture.seen({1050, 400, 1, 1}).pixelColor(0, 0) == Qt::yellow; };
        QVERIFY(waitFor(isYellow, patience));
        QCOMPARE(fixture.output(), kept);
        fixture.command("--resume");
        QVERIFY2(fixture.showsArea(moved), fixture.program.output());

        fixture.command("--frame=on");
        const auto becomesBlue = [&](QPoint place) {
            return waitFor(
                [&] {
                    return fixture.seen({place, QSize(1, 1)}).pixelColor(0, 0)
                        == QColor(0, 122, 255);
                },
                patience);
        };
        QRect place = moved;
        QVERIFY(becomesBlue(bar(place)));
        QVERIFY2(fixture.showsArea(moved), fixture.program.output());
        // Each of the later drags begins as soon as the handle is there, and ends at once.
        for (const QPoint way : {QPoint(-300, -60), {250, 40}, {-250, -20}, {270, 10}}) {
            const QPoint handle(place.center().x() + 15, place.top() - 11);
            QVERIFY(becomesBlue(handle - QPoint(35, 0))); // where no pointer is
            fixture.pressOnFrame(handle);
            for (int step = 1; step <= 20; ++step) {
                fixture.input.moveTo(handle + way * step / 20);
            }
            const bool isFirst = place == moved;
            place.translate(way);
            QVERIFY(!isFirst || becomesBlue(bar(place)));
            fixture.input.release();
        }
        const QByteArray dragged = QStringLiteral(R"("sharedArea":{"x":%1.0,"y":%2.0)")
                                       .arg(place.left())
                                       .arg(720 - place.bottom() - 1)
                                       .toLatin1();
        QVERIFY2(waitFor([&] { return fixture.command("--status").contains(dragged); }, patience),
                 fixture.command("--status"));
        QVERIFY2(fixture.showsArea(place), fixture.program.output());

        fixture.command("--stop");
        QVERIFY(fixture.becomesHidden());
        fixture.command("--share"); // without a question
        QVERIFY2(fixture.showsArea(), fixture.program.output());
        fixture.stopRecording();
        QVERIFY(fixture.becomesHidden());
        QCOMPARE(fixture.shownWindows(), 1);
        QVERIFY(fixture.command("--status").contains(R"("sharing":false)"));
        QVERIFY(fixture.isAreaSaved());
    }

    void area_isFoundOnAnyMonitor_data()
    {
        QTest::addColumn<std::vector<QSize>>("monitors");
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<int>("scale"); // pixels for each point
        QTest::addColumn<double>("magnification"); // pixels of the monitor for each of Xwayland
        QTest::addColumn<QRect>("place"); // Xwayland's pixels
        QTest::addColumn<QString>("backend");
        const QString gnome = QStringLiteral("gnome");
        const std::vector<QSize> one{{1280, 720}};
        const std::vector<QSize> two{{1280, 720}, {800, 600}};
        const QByteArray twice = "[org/gnome/desktop/interface]\nscaling-factor=uint32 2\n";
        const QByteArray byStage
            = "[org/gnome/mutter]\nexperimental-features=['scale-monitor-framebuffer']\n";
        QTest::addRow("second") << two << QByteArray() << 1 << 1.0 << QRect(1400, 50, 300, 200)
                                << gnome;
        QTest::addRow("both") << two << QByteArray() << 1 << 1.0 << QRect(1180, 50, 300, 200)
                              << gnome;
        QTest::addRow("partly none")
            << two << QByteArray() << 1 << 1.0 << QRect(1900, 450, 300, 200) << gnome;
        QTest::addRow("scaled") << one << twice << 2 << 1.0 << QRect(920, 300, 340, 380) << gnome;
        QTest::addRow("second, portal") << two << QByteArray() << 1 << 1.0
                                        << QRect(1400, 50, 300, 200) << QStringLiteral("portal");
        QTest::addRow("magnified")
            << one << twice + byStage << 1 << 2.0 << QRect(330, 40, 300, 310) << gnome;
        const std::vector<QSize> dense{{2560, 1440}};
        const std::vector<QSize> fine{{1920, 1080}};
        QTest::addRow("half more")
            << fine << byStage << 1 << 1.5 << QRect(980, 300, 280, 350) << gnome;
        QTest::addRow("half more, portal")
            << fine << byStage << 1 << 1.5 << QRect(980, 300, 280, 350) << QStringLiteral("portal");
        QTest::addRow("scaled, portal")
            << dense << twice << 2 << 1.0 << QRect(1960, 600, 560, 700) << QStringLiteral("portal");
        QTest::addRow("magnified, portal") << dense << twice + byStage << 1 << 2.0
                                           << QRect(980, 300, 280, 350) << QStringLiteral("portal");
    }
    void area_isFoundOnAnyMonitor()
    {
        QFETCH(const std::vector<QSize>, monitors);
        QFETCH(const QByteArray, settings);
        QFETCH(const int, scale);
        QFETCH(const double, magnification);
        QFETCH(const QRect, place);
        QFETCH(const QString, backend);
        GnomeFixture fixture(backend,
                             {.monitors = monitors,
                              .settings = settings,
                              .scale = magnification == 1.5 ? magnification : 1});
        const auto window = required(ColorWindow::show(
            fixture.client, {.rectangle = place.adjusted(20, 30, -40, -50), .color = 0xff00ffff}));
        fixture.startSharing(place, scale);
        if (backend == u"portal") {
            const auto monitor = monitors.size() > 1 ? std::optional(fixture.dialog.secondMonitor)
                                                     : fixture.dialog.firstMonitor;
            if (monitor) {
                fixture.answer(*monitor, scale * magnification);
            }
            fixture.answer(fixture.dialog.share, scale * magnification);
        }
        std::vector<std::unique_ptr<GnomeStream>> streams;
        for (int i = 0; i < static_cast<int>(monitors.size()); ++i) {
            streams.emplace_back(new GnomeStream(fixture.session.recordMonitor(i)));
        }
        const auto expected = [&] {
            QImage desktop(QSize(3000, 1500), QImage::Format_RGB32);
            desktop.fill(Qt::black);
            QPainter painter(&desktop);
            QPoint at;
            for (const auto &stream : streams) {
                const QImage picture = (*stream)->picture();
                painter.drawImage(at, picture);
                at.rx() += picture.width();
            }
            return desktop.copy(
                QRect(place.topLeft() * magnification, place.size() * magnification));
        };
        const auto isShown = [&] {
            const QImage seen = fixture.output();
            return !seen.isNull() && seen.pixelColor(QPoint(40, 50) * magnification) == Qt::cyan
                && seen == expected();
        };
        QVERIFY2(waitFor(isShown, patience), fixture.program.output());
        auto viewer = fixture.session.recordWindow(fixture.session.window(outputTitle)->id);
        QVERIFY(becomeEqual([&] { return viewer->picture(); }, expected, patience));
    }

    void outputsActivation_bringsTheMainWindow_data()
    {
        QTest::addColumn<QPoint>("place"); // in the overview
        QTest::addColumn<QPoint>("place48"); // in GNOME 48's
        QTest::addRow("preview") << QPoint(430, 300) << QPoint(430, 300);
        QTest::addRow("dash") << QPoint(643, 672) << QPoint(675, 666);
    }
    void outputsActivation_bringsTheMainWindow()
    {
        QFETCH(const QPoint, place);
        QFETCH(const QPoint, place48);
        GnomeFixture fixture(QStringLiteral("gnome"));
        fixture.share();
        QVERIFY2(fixture.showsArea(), fixture.program.output());
        const auto mainWindow = findWindow(fixture.client, mainTitle).value();
        const auto isHidden
            = [&](const QString &title) { return fixture.session.window(title)->isHidden; };
        const auto settle
            = [&] { fixture.settled([&] { return fixture.seen({0, 40, 900, 680}); }); };
        for (int i = 0; i < 2; ++i) { // the first time may make the output the one used last
            settle();
            constexpr uint32_t iconicState = 3; // ICCCM 4.1.4
            sendMessage(fixture.client, mainWindow, "WM_CHANGE_STATE", iconicState,
                        fixture.client.root());
            QVERIFY(waitFor([&] { return isHidden(mainTitle); }, patience));
            fixture.session.showOverview(true);
            settle();
            fixture.input.click(fixture.dialog.firstMonitor ? place : place48);
            QVERIFY(waitFor([&] { return !fixture.session.isOverviewShown(); }, patience));
            QVERIFY2(waitFor([&] { return fixture.session.window(mainTitle)->hasFocus; }, patience),
                     fixture.program.output());
            QVERIFY(fixture.isOutputUnseen());
        }
        QVERIFY(fixture.showsArea());
    }

    void loss_endsTheSession_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("service"); // on the bus; empty for PipeWire
        QTest::addRow("gnome without PipeWire") << QStringLiteral("gnome") << QString();
        QTest::addRow("portal without PipeWire") << QStringLiteral("portal") << QString();
        QTest::addRow("portal without portal")
            << QStringLiteral("portal") << QStringLiteral("org.freedesktop.portal.Desktop");
    }
    void loss_endsTheSession()
    {
        QFETCH(const QString, backend);
        QFETCH(const QString, service);
        GnomeFixture fixture(backend);
        fixture.share();
        QVERIFY2(fixture.showsArea(), fixture.program.output());
        if (service.isEmpty()) {
            fixture.session.endPipeWire();
        } else {
            ::kill(fixture.processOf(service), SIGKILL);
        }
        QVERIFY2(fixture.becomesHidden(), fixture.program.output());
        QVERIFY2(fixture.becomesWindows(2), fixture.program.output());
        QVERIFY(fixture.program.isRunning());
        QVERIFY(fixture.command("--share").contains("showing a message"));
        QVERIFY(fixture.isAreaSaved());
    }

    void anotherMonitor_isAskedForAgain()
    {
        constexpr QRect onSecond(1400, 50, 300, 200);
        GnomeFixture fixture(QStringLiteral("portal"), {.monitors = {{1280, 720}, {800, 600}}});
        auto second = fixture.session.recordMonitor(1);
        const auto window = required(ColorWindow::show(
            fixture.client,
            {.rectangle = onSecond.adjusted(20, 30, -90, -50), .color = 0xff00ffff}));
        fixture.share();
        QVERIFY2(fixture.showsArea(), fixture.program.output());
        fixture.command("--stop");
        fixture.command("--area=1400,470,300x200");
        auto again = required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                                   .arguments = {QStringLiteral("--share")},
                                                   .environment = fixture.session.environment()}));
        fixture.answer(fixture.dialog.secondMonitor);
        fixture.answer(fixture.dialog.share);
        const auto expected = [&] { return second->picture().copy(onSecond.translated(-1280, 0)); };
        QVERIFY2(becomeEqual([&] { return fixture.output(); }, expected, patience),
                 fixture.program.output());
        QVERIFY(again.waitForEnd(patience));
    }

    void refusal_isToldOnce()
    {
        GnomeFixture fixture(QStringLiteral("portal"));
        fixture.startSharing();
        QVERIFY(waitFor([&] { return fixture.session.isPortalDialogShown(); }, patience));
        fixture.command("--stop");
        QVERIFY(waitFor([&] { return !fixture.session.isPortalDialogShown(); }, patience));
        QCOMPARE(fixture.shownWindows(), 1);
        const auto says = [&] { return fixture.program.output(); };
        QVERIFY2(waitFor([&] { return says().contains("stopped before it started"); }, patience),
                 says());

        auto again = required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                                   .arguments = {QStringLiteral("--share")},
                                                   .environment = fixture.session.environment()}));
        fixture.answer(fixture.dialog.cancel);
        QVERIFY(fixture.becomesWindows(2));
        QVERIFY(again.waitForEnd(patience));
        QVERIFY2(again.output().contains("declined"), again.output());
        QVERIFY(fixture.isAreaSaved());
    }
};

QTEST_GUILESS_MAIN(GnomeTest)
#include "GnomeTest.moc"
