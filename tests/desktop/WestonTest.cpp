// SPDX-License-Identifier: MIT
#include "rig/ChildProcess.h"
#include "rig/DisplayEnvironment.h"
#include "rig/SessionBus.h"
#include "rig/XWindows.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace glimmerpane;
using namespace glimmerpane::testing;

/** The program in a Wayland session that offers no way to record the screen. */
class WestonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sharing_saysWhatIsMissing()
    {
        constexpr std::chrono::seconds patience{10};
        const QTemporaryDir folder;
        auto environment = environmentOf({});
        for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
            environment.insert(QString::fromLatin1(name), folder.path());
        }
        const SessionBus bus = required(SessionBus::start(environment));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        const auto weston = required(ChildProcess::start(
            {.program = QStringLiteral("weston"),
             .arguments = {QStringLiteral("--backend=headless-backend.so"),
                           QStringLiteral("--xwayland"), QStringLiteral("--socket=wayland-0")},
             .environment = environment}));
        const QRegularExpression listening(QStringLiteral("listening on display (:[0-9]+)"));
        const auto display
            = [&] { return listening.match(QString::fromLocal8Bit(weston.output())).captured(1); };
        QVERIFY2(waitFor([&] { return !display().isEmpty(); }, patience), weston.output());
        const XClient client = required(XClient::connect(display()));
        environment.insert(QStringLiteral("DISPLAY"), display());
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0"));
        const auto launch = [&](const char *option) {
            return required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                                 .arguments = {QString::fromLatin1(option)},
                                                 .environment = environment}));
        };
        const auto running = launch("--share");
        QVERIFY2(waitFor([&] { return running.output().contains("wlr-screencopy 3"); }, patience),
                 running.output());
        const auto isAlertUp = [&] { // beside the main window
            return std::ranges::count_if(
                       listWindows(client, Listing::Picker),
                       [&](auto window) { return pidOf(client, window) == running.pid(); })
                == 2;
        };
        QVERIFY(waitFor(isAlertUp, patience));
        auto status = launch("--status");
        QVERIFY(status.waitForEnd(patience));
        QVERIFY2(status.output().contains(R"("sharing":false)")
                     && status.output().contains(R"("backend":"none")"),
                 status.output());
    }
};

QTEST_GUILESS_MAIN(WestonTest)
#include "WestonTest.moc"
