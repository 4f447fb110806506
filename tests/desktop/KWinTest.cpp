// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/KWinClient.h"
#include "rig/KWinSession.h"
#include "rig/PictureComparison.h"

#include <QPainter>
#include <QRegularExpression>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

/**
 * Longer than the wait for a first picture, and what KWin 5 takes to read the whole program at each
 * connection: several seconds with the sanitizers.
 */
constexpr std::chrono::seconds patience{45};
constexpr QPoint pointer(840, 440); ///< in an area that is shared
const QString program = QStringLiteral(GLIMMERPANE_PROGRAM);
const QString outputTitle = QStringLiteral("Glimmerpane - Output");
const QString share = QStringLiteral("--share");
const QString status = QStringLiteral("--status");

ChildProcess launch(const KWinSession &session, const QString &path, const QStringList &arguments,
                    bool isLogged = false)
{
    auto environment = session.environment();
    if (isLogged) {
        environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                           QStringLiteral("glimmerpane.platform.info=true"));
    }
    return required(
        ChildProcess::start({.program = path, .arguments = arguments, .environment = environment}));
}

/** What the running instance, or one that fails, answers. */
QByteArray answer(const KWinSession &session, const QStringList &arguments,
                  const QString &path = program)
{
    auto other = launch(session, path, arguments);
    return other.waitForEnd(patience) ? other.output() : "it does not end";
}

} // namespace

/** The program under KWin on Wayland. */
class KWinTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void output_showsTheArea()
    {
        constexpr QRect area(500, 300, 400, 300);
        const KWinSession session;
        const KWinClient kwin(session.socket());
        const XClient client = required(XClient::connect(session.displayName()));
        const auto show = [&](QPoint place, QRgb color) {
            return required(ColorWindow::show(
                client, {.rectangle = {area.topLeft() + place, QSize(60, 40)}, .color = color}));
        };
        kwin.moveTo({100, 100}); // out of the area
        const std::array windows{show({10, 20}, 0xffff0000), show({320, 250}, 0xff00ff00)};
        const auto running
            = launch(session, program, {QStringLiteral("--area=500,120,400x300"), share});
        if (session.majorVersion() < 6) {
            const auto isTold = [&] {
                return running.output().contains("has not delivered a picture of the screen");
            };
            QVERIFY2(waitFor(isTold, patience), running.output());
            return;
        }
        // Except for the pointer, which is not in KWin's screenshots.
        const auto besidePointer = [](QImage picture, QPoint origin) {
            if (!picture.isNull()) {
                QPainter(&picture).fillRect(QRect(pointer - origin, QSize(40, 40)), Qt::black);
            }
            return picture;
        };
        const auto output = [&] {
            const auto window = findWindow(client, outputTitle, Listing::All);
            return windowPicture(client, window.value_or(XCB_WINDOW_NONE)).value_or(QImage());
        };
        const auto showsArea = [&](QPoint place) {
            return becomeEqual(
                [&] { return besidePointer(output(), place); },
                [&] { return besidePointer(session.screenshot({place, area.size()}), place); },
                patience);
        };
        QVERIFY2(showsArea(area.topLeft()), running.output());
        const auto showsPointer = [&] { return output() != session.screenshot(area); };
        QVERIFY(waitFor([&] { return !showsPointer(); }, patience));
        kwin.moveTo(pointer);
        QVERIFY(waitFor(showsPointer, patience));
        for (const auto &window : windows) {
            for (const QRgb color : {0xffffff00, 0xff00ffff, 0xffff00ff}) {
                window.setColor(color);
                QVERIFY2(showsArea(area.topLeft()), running.output());
            }
        }
        QCOMPARE(answer(session, {QStringLiteral("--move=480,160")}), QByteArray());
        QVERIFY2(showsArea({480, 260}), running.output());
        windows[0].setColor(0xff0000ff);
        QVERIFY2(showsArea({480, 260}), running.output());
    }

    void recording_endsClearly_whenNoPictureComes_data()
    {
        QTest::addColumn<QString>("pipeWireEnds");
        QTest::addColumn<QString>("says"); // a regular expression
        QTest::addRow("KWin refuses")
            << QStringLiteral("before") << QStringLiteral("KWin does not record the screen: ");
        QTest::addRow("PipeWire ends")
            << QStringLiteral("after")
            << QStringLiteral(
                   "PipeWire has ended|no longer delivers|recording ends: PipeWire"); // as it
                                                                                      // notices
    }
    void recording_endsClearly_whenNoPictureComes()
    {
        QFETCH(const QString, pipeWireEnds);
        QFETCH(const QString, says);
        KWinSession session;
        const KWinClient kwin(session.socket());
        const QRegularExpression expected(says);
        if (pipeWireEnds == u"before") {
            session.endPipeWire();
        }
        auto running
            = launch(session, program, {QStringLiteral("--area=100,100,400x300"), share}, true);
        if (pipeWireEnds != u"before") {
            QRect place;
            const auto isParked = [&] {
                const auto window = kwin.window(outputTitle);
                place = window && window->isOffered() ? window->geometry : QRect();
                return place == QRect(1279, -299, 400, 300);
            };
            QVERIFY2(waitFor(isParked, patience), running.output());
            QByteArray said;
            const auto isAnswered = [&] {
                said = answer(session, {status});
                return said.contains(R"("backend":"kwin","clicks":"none")");
            };
            QVERIFY2(waitFor(isAnswered, patience), said);
        }
        if (pipeWireEnds == u"after") {
            QVERIFY(waitFor([&] { return running.output().contains("stream is streaming"); },
                            patience));
            session.endPipeWire();
        }
        QVERIFY2(waitFor([&] { return QString::fromUtf8(running.output()).contains(expected); },
                         patience),
                 running.output());
        answer(session, {QStringLiteral("--stop")}); // a failed start waits for the alert's answer
        QVERIFY(waitFor([&] { return !kwin.window(outputTitle); }, patience));
        QVERIFY(running.isRunning());
    }

    void permission_comesWithTheInstalledEntry()
    {
        const QTemporaryDir installed;
        auto install = required(ChildProcess::start(
            {.program = QStringLiteral("cmake"),
             .arguments = {QStringLiteral("--install"), QStringLiteral(GLIMMERPANE_BUILD),
                           QStringLiteral("--prefix"), installed.path()}}));
        QVERIFY2(install.waitForEnd(patience) && install.exitCode() == 0, install.output());
        const KWinSession session({.installed = installed.filePath(QStringLiteral("share"))});
        const auto backendOf = [&session](const QString &path) {
            auto running = launch(session, path, {});
            QByteArray said;
            waitFor([&] { return (said = answer(session, {status})).startsWith('{'); }, patience);
            return said;
        };
        QVERIFY(backendOf(installed.filePath(QStringLiteral("bin/glimmerpane")))
                    .contains(R"("backend":"kwin")"));
        QVERIFY(!backendOf(program).contains(R"("backend":"kwin")"));
        auto refused = launch(session, program, {QStringLiteral("--backend=kwin"), share});
        QVERIFY(waitFor([&] { return refused.output().contains("once Glimmerpane is installed"); },
                        patience));
    }

    void selector_followsThePointer()
    {
        const KWinSession session;
        const KWinClient kwin(session.socket());
        const XClient client = required(XClient::connect(session.displayName()));
        const auto running
            = launch(session, program,
                     {QStringLiteral("--area=100,100,600x400"), QStringLiteral("--select")});
        const QString overlayTitle = QStringLiteral("Glimmerpane - Area");
        const auto isOpen
            = [&] { return findWindow(client, overlayTitle, Listing::All).has_value(); };
        constexpr QRgb handle = 0xff007aff;
        const auto shows = [&](QPoint place, QRgb color) {
            const auto isShown
                = [&] { return session.screenshot({place, QSize(1, 1)}).pixel(0, 0) == color; };
            return waitFor(isShown, patience);
        };
        const auto leap = [&](QPoint from, QPoint to) {
            kwin.moveTo(from);
            kwin.press();
            kwin.moveTo(to);
            kwin.release();
        };
        QVERIFY(waitFor(isOpen, patience));
        QVERIFY(shows({105, 225}, handle)); // its top-left corner, 100 points above the bottom
        // By its inside, then by its right edge; each in one leap, far out of where it was.
        leap({150, 350}, {250, 150});
        QVERIFY(shows({205, 25}, handle));
        leap({798, 120}, {1100, 500});
        QVERIFY(shows({1095, 25}, handle));
        leap({650, 205}, {650, 205}); // "Confirm"
        QVERIFY(waitFor([&] { return !isOpen(); }, patience));
        const auto isSaved = [&] {
            return answer(session, {status})
                .contains(R"("area":{"x":200.0,"y":300.0,"width":900.0,"height":400.0})");
        };
        QVERIFY(waitFor(isSaved, patience));
    }
};

QTEST_GUILESS_MAIN(KWinTest)
#include "KWinTest.moc"
