// SPDX-License-Identifier: MIT
#include "demo/Demonstration.h"
#include "rig/Statistics.h"
#include "rig/StopSignals.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextStream>

using namespace glimmerpane;
using testing::median;
using testing::quantile;

namespace
{

void print(const demo::Outcome &outcome, const QString &folder)
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
        << "Pictures: desktop.png, main-window.png, output.png and selector.png in " << folder
        << "\n";
}

} // namespace

int main(int argc, char **argv)
{
    const testing::StopSignals signals;
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
                                     QStringLiteral("path"), QStringLiteral(GLIMMERPANE_PROGRAM));
    parser.addOptions({output, program});
    parser.process(application);

    const QString folder = parser.value(output);
    const QString executable = QFileInfo(parser.value(program)).absoluteFilePath();
    QTextStream problems(stderr);
    if (!QDir().mkpath(folder) || !QDir::setCurrent(folder)) {
        problems << "glimmerpane_demo: cannot create " << folder << "\n";
        return 1;
    }
    try {
        print(demo::demonstrate(executable, signals.token()), folder);
    } catch (const testing::Failure &problem) {
        problems << "glimmerpane_demo: " << problem.what() << "\n";
        return signals.token().stop_requested() ? 130 : 1;
    }
    return 0;
}
