// SPDX-License-Identifier: MIT
#include "rig/ColorWindow.h"
#include "rig/WaitFor.h"
#include "tests/desktop/SelectorFixture.h"
#include "tests/support/HttpsServer.h"

#include <QFile>
#include <QPointer>
#include <QTest>

#include <csignal>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

// The display is 1280 x 1024 pixels, so this is its rectangle (40, 604) to (360, 844).
const QStringList shareArea{QStringLiteral("--area=40,180,320x240"), QStringLiteral("--share")};
constexpr QRect sharedArea(40, 604, 320, 240);
const QByteArray download = "https://x.example/get?v=1.5.0&for=linux#now";
const QByteArray offer
    = "{\"lastAppVersion\":\"1.5.0\",\"canUpdate\":true,\"downloadUrl\":\"" + download + "\"}";

/** A program that asks the server, on a desktop whose browser writes down what it opens. */
struct UpdateFixture : SelectorFixture {
    QTemporaryDir tools;

    UpdateFixture(const QString &address, const QByteArray &authority, WindowManager manager)
        : SelectorFixture(manager)
    {
        executable = QStringLiteral(ASKING_PROGRAM);
        environment.remove(QStringLiteral("GLIMMERPANE_NO_UPDATE_CHECK"));
        environment.insert(QStringLiteral("TEST_UPDATE_URL"), address);
        environment.insert(QStringLiteral("TEST_AUTHORITY"), QString::fromLatin1(authority));
        environment.insert(QStringLiteral("PATH"),
                           tools.path() + u':' + environment.value(QStringLiteral("PATH")));
        QFile browser(tools.filePath(QStringLiteral("xdg-open")));
        const bool isThere = browser.open(QIODevice::WriteOnly)
            && browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)
            && browser.write("#!/bin/sh\necho \"$@\" >>\"${0%/*}/opened\"\n") > 0;
        QVERIFY(isThere);
    }

    QByteArray opened() const
    {
        QFile file(tools.filePath(QStringLiteral("opened")));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }
};

} // namespace

class UpdateTest : public QObject
{
    Q_OBJECT

    const QSslConfiguration trusted_ = serverNamed(QStringLiteral("IP:127.0.0.1"));

    UpdateFixture asking(const QString &address,
                         WindowManager manager = WindowManager::Openbox) const
    {
        return UpdateFixture(address, trusted_.localCertificate().toPem(), manager);
    }

private Q_SLOTS:
    void offer_isTakenOrDeclined_whileTheSessionGoesOn()
    {
        for (const bool isTaken : {true, false}) {
            const HttpsServer server(trusted_, reply(message("200 OK", offer)));
            auto fixture = asking(server.address());
            fixture.startBus();
            fixture.start(shareArea);
            QVERIFY(fixture.showsArea(sharedArea));
            QVERIFY(waitFor([&] { return fixture.shownWindows() == 2; }, patience));

            // The main window does not hear this; the session goes on.
            fixture.click(places::stopSharing);
            const auto window = ColorWindow::show(
                fixture.client,
                {.rectangle = sharedArea.adjusted(20, 20, -50, -50), .color = 0xff0000ff});
            QVERIFY(fixture.showsArea(sharedArea));

            QByteArray status; // a command is obeyed though the alert is up
            const auto command
                = isTaken ? QStringLiteral("--area=1,2,3x4") : QStringLiteral("--stop");
            QCOMPARE(fixture.launchAgain({command, QStringLiteral("--status")}, &status), 0);
            QCOMPARE(status.contains("\"sharing\":true"), isTaken);
            QCOMPARE(fixture.outputWindow().has_value(), isTaken);

            QVERIFY(fixture.answerAlert(isTaken ? keys::enter : keys::escape));
            const QByteArray opened = isTaken ? download : QByteArray();
            QVERIFY(waitFor([&] { return fixture.opened() == opened; }, patience));
            QVERIFY(!isTaken || fixture.stopSharing());
            fixture.program.sendSignal(SIGTERM);
            QCOMPARE(fixture.waitForExit(), 0);
            QCOMPARE(fixture.opened(), opened);
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void failure_isToldInEnglish()
    {
        const HttpsServer server(trusted_, reply(message("200 OK", "{}")));
        auto fixture = asking(server.address());
        fixture.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
        fixture.start();
        const char *const line = "Update check failed: The answer cannot be read: "
                                 "\"lastAppVersion\" is not a string.\n";
        QVERIFY2(waitFor([&] { return fixture.program.output().contains(line); }, patience),
                 fixture.program.output());
    }

    void offer_liesAboveTheSelector_whichIsDeafUntilItsAnswer()
    {
        for (const auto manager : {WindowManager::None, WindowManager::Openbox}) {
            QPointer<QSslSocket> asker;
            const HttpsServer server(trusted_, [&](QSslSocket &socket) { asker = &socket; });
            auto fixture = asking(server.address(), manager);
            QVERIFY(fixture.launch({QStringLiteral("--area=100,300,600x400")}) && fixture.open());
            const QRect opened(100, 324, 600, 400);
            const QRect moved = opened.translated(10, 0);
            const auto isUncovered
                = [&] { return showsWholeSelector(required(fixture.client.screenshot(moved))); };
            const QPoint grip(550, 350);
            fixture.input.moveTo(opened.topLeft() + grip);
            fixture.input.press();
            fixture.input.moveTo(moved.topLeft() + grip);
            QTRY_VERIFY(isUncovered());
            QTRY_VERIFY(asker);
            reply(message("200 OK", offer))(*asker);
            QTRY_VERIFY(!isUncovered());

            fixture.input.moveTo(moved.topLeft() + grip + QPoint(60, 0));
            fixture.input.release();
            fixture.input.drag(moved.topLeft() + grip, opened.topLeft() + grip);
            QVERIFY(fixture.answerAlert(keys::escape));
            QTRY_VERIFY(isUncovered());
            QVERIFY(fixture.becomes(moved));
            fixture.confirm();
            QVERIFY(fixture.becomes(std::nullopt));
        }
    }

    void program_endsAtOnce_whileItAsks()
    {
        for (const bool looksUp : {false, true}) { // a silent server, or a silent name server
            const HttpsServer server(trusted_, [](QSslSocket &) { });
            auto fixture
                = asking(looksUp ? QStringLiteral("https://updates.example/") : server.address());
            if (looksUp) {
                fixture.environment.insert(QStringLiteral("LD_PRELOAD"),
                                           QStringLiteral(SILENT_NAME_SERVER));
                // AddressSanitizer wants to be loaded before anything else.
                const QString sanitizer = QStringLiteral("ASAN_OPTIONS");
                fixture.environment.insert(sanitizer,
                                           fixture.environment.value(sanitizer)
                                               + QStringLiteral(":verify_asan_link_order=0"));
            }
            fixture.start(shareArea);
            QVERIFY(fixture.showsArea(sharedArea));
            const auto asks = [&] {
                return server.requests().size() == 1
                    || fixture.program.output().contains("looking up");
            };
            QVERIFY(waitFor(asks, patience));
            fixture.program.sendSignal(SIGTERM);
            QCOMPARE(fixture.waitForExit(), 0);
            QVERIFY(!fixture.outputWindow());
        }
    }

    void nobodyIsAsked_whereTheEnvironmentForbidsIt()
    {
        const HttpsServer server(trusted_, reply(message("200 OK", {})));
        for (const char *variable :
             {"GLIMMERPANE_NO_UPDATE_CHECK", "XCTestConfigurationFilePath"}) {
            auto silent = asking(server.address());
            silent.environment.insert(QString::fromLatin1(variable), QStringLiteral("1"));
            silent.start();
            QVERIFY(silent.waitForMainWindow());
            // The second program is the later one to ask.
            auto asker = asking(server.address());
            asker.start();
            const auto before = server.requests().size();
            QVERIFY(waitFor([&] { return server.requests().size() > before; }, patience));
            QCOMPARE(server.requests().size(), before + 1);
        }
    }
};

QTEST_GUILESS_MAIN(UpdateTest)
#include "UpdateTest.moc"
