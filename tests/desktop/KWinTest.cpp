// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/KWinClient.h"
#include "rig/KWinSession.h"

#include <QRegularExpression>
#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr std::chrono::seconds patience{15}; ///< longer than the wait for a first picture
const QString program = QStringLiteral(GLIMMERPANE_PROGRAM);
const QString outputTitle = QStringLiteral("Glimmerpane - Output");
const QString share = QStringLiteral("--share");
const QString status = QStringLiteral("--status");

ChildProcess launch(const KWinSession &session, const QString &path, const QStringList &arguments)
{
    return required(ChildProcess::start(
        {.program = path, .arguments = arguments, .environment = session.environment()}));
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
    void recording_endsClearly_whenNoPictureComes_data()
    {
        QTest::addColumn<QString>("pipeWireEnds");
        QTest::addColumn<QString>("says"); // a regular expression
        QTest::addRow("a screen without pictures")
            << QString() << QStringLiteral("has not delivered a picture of the screen");
        QTest::addRow("KWin refuses")
            << QStringLiteral("before") << QStringLiteral("KWin does not record the screen: ");
        QTest::addRow("PipeWire ends")
            << QStringLiteral("after")
            << QStringLiteral("PipeWire has ended|no longer delivers"); // as it notices
    }
    void recording_endsClearly_whenNoPictureComes()
    {
        QFETCH(const QString, pipeWireEnds);
        QFETCH(const QString, says);
        KWinSession session;
        const KWinClient kwin(session.socket());
        const QRegularExpression expected(
            session.draws() ? says : QStringLiteral("OpenGL compositing is required"));
        if (pipeWireEnds == u"before") {
            session.endPipeWire();
        }
        auto running = launch(session, program, {QStringLiteral("--area=100,100,400x300"), share});
        if (pipeWireEnds != u"before") {
            const QPoint wanted
                = session.draws() ? QPoint(1279, -299) : QPoint(-10000, -10000); // 6
            QRect place;
            const auto isParked = [&] {
                const auto window = kwin.window(outputTitle);
                place = window && window->isOffered() ? window->geometry : QRect();
                return place == QRect(wanted, QSize(400, 300));
            };
            QVERIFY2(waitFor(isParked, patience), running.output());
            const QByteArray said = answer(session, {status});
            QVERIFY2(said.contains(R"("backend":"kwin","clicks":"none")"), said);
        }
        if (pipeWireEnds == u"after") {
            session.endPipeWire();
        }
        QVERIFY2(waitFor([&] { return QString::fromUtf8(running.output()).contains(expected); },
                         patience),
                 running.output());
        QCOMPARE(answer(session, {QStringLiteral("--stop")}), QByteArray());
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
        const bool draws = session.draws();
        const auto shows = [&](QPoint place, QRgb color) {
            const auto isShown = [&] {
                if (draws) {
                    return session.screenshot({place, QSize(1, 1)}).pixel(0, 0) == color;
                }
                const auto overlay = findWindow(client, overlayTitle, Listing::All); // spans all
                const auto picture = windowPicture(client, overlay.value_or(XCB_WINDOW_NONE));
                return picture && picture->pixel(place) == color;
            };
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
