// SPDX-License-Identifier: MIT
#include "demo/Demonstration.h"
#include "rig/Statistics.h"
#include "rig/StopSignals.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextStream>

namespace
{

using glimmerpane::demo::Demonstration;
using glimmerpane::testing::median;
using glimmerpane::testing::quantile;

void print(const Demonstration::Outcome &outcome, const QDir &folder)
{
    const auto &frames = outcome.frames;
    QTextStream out(stdout);
    out.setRealNumberNotation(QTextStream::FixedNotation);
    out.setRealNumberPrecision(2);
    out << "Glimmerpane shared 1280x720 of a private display of 1920x1080.\n"
        << "The viewer's picture is the area's with the pointer in it: no pixel differs.\n"
        << "Frames: " << frames.rate() << " a second shown, " << frames.dropped() << " of "
        << frames.sent << " dropped in " << frames.seconds << " s of a 60 Hz animation.\n"
        << "From a change on the screen to the same change in the output: median "
        << median(outcome.latencies) << " ms, 95 % within " << quantile(outcome.latencies, 0.95)
        << " ms, longest " << quantile(outcome.latencies, 1) << " ms (" << outcome.latencies.size()
        << " changes).\n"
        << "Pictures: desktop.png, main-window.png, output.png and selector.png in "
        << folder.path() << "\n";
}

} // namespace

int main(int argc, char **argv)
{
    const glimmerpane::testing::StopSignals signals;
    // It draws pictures and never shows a window, nor has it business on anybody's session bus.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    const QTemporaryDir runtimeFolder; // else Qt leaves one behind where the session has none
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
        qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    }
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption output(QStringLiteral("output"),
                                    QStringLiteral("Folder for the pictures."),
                                    QStringLiteral("folder"), QStringLiteral("build/demo"));
    const QCommandLineOption program(QStringLiteral("program"),
                                     QStringLiteral("Glimmerpane's executable."),
                                     QStringLiteral("path"));
    parser.addOptions({output, program});
    parser.process(application);

    const QDir folder(parser.value(output));
    if (!folder.mkpath(QStringLiteral("."))) {
        QTextStream(stderr) << "glimmerpane_demo: cannot create " << folder.path() << "\n";
        return 1;
    }
    const auto outcome = Demonstration::run(
        {.executable = glimmerpane::testing::executableOr(parser.value(program)),
         .output = folder,
         .stop = signals.token()});
    if (signals.token().stop_requested()) {
        QTextStream(stderr) << "glimmerpane_demo: stopped\n";
        return 130;
    }
    if (!outcome) {
        QTextStream(stderr) << "glimmerpane_demo: " << outcome.error() << "\n";
        return 1;
    }
    print(*outcome, folder);
    return 0;
}
