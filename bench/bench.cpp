// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/Program.h"
#include "rig/StopSignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <utility>

namespace
{

using namespace glimmerpane::bench;

struct Named {
    const char *name;
    Figures (*measure)(const Measurement &);
};

constexpr Named measurements[] = {
    {"full-motion", &measureFullMotion},
    {"still-screen", &measureStillScreen},
    {"latency", &measureChangeLatency},
    {"first-frame", &measureFirstFrame},
    {"start-up", &measureStartUp},
    {"cycles", &measureCycles},
    {"drag", &measureDragging},
    {"clicks", &measureClicks},
    {"peers", &measurePeers},
};

void tell(const QString &text)
{
    QTextStream(stderr) << text << "\n";
}

Extent quickExtent()
{
    return {.runs = 2,
            .phase = std::chrono::milliseconds(1500),
            .stillPhase = std::chrono::milliseconds(4000),
            .changes = 30,
            .cycles = 40};
}

/** Every measurement is tried; what failed is told and counted. */
std::pair<std::vector<Figure>, int> measureAll(const Measurement &measurement, const QString &only)
{
    std::vector<Figure> figures;
    int failures = 0;
    for (const Named &named : measurements) {
        const QString name = QString::fromLatin1(named.name);
        if ((!only.isEmpty() && only != name) || measurement.stop.stop_requested()) {
            continue;
        }
        const auto result = named.measure(measurement);
        if (result) {
            figures.insert(figures.end(), result->begin(), result->end());
            continue;
        }
        ++failures;
        tell(QStringLiteral("glimmerpane_bench: %1: %2").arg(name, result.error()));
        figures.push_back({.name = name,
                           .measured = QStringLiteral("could not be measured"),
                           .counted = result.error()});
    }
    return {std::move(figures), failures};
}

bool writeResults(const QDir &folder, const std::vector<Figure> &figures, const QString &mode)
{
    const QString text = table(figures, mode);
    QTextStream(stdout) << text;
    if (!folder.mkpath(QStringLiteral("."))) {
        return false;
    }
    const std::pair<QString, QString> files[]
        = {{QStringLiteral("results.md"), text}, {QStringLiteral("results.svg"), plot(figures)}};
    for (const auto &[name, content] : files) {
        if (const auto written = writeText(folder.filePath(name), content); !written) {
            tell(QStringLiteral("glimmerpane_bench: %1").arg(written.error()));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    const StopSignals signals;
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures what Glimmerpane costs."));
    parser.addHelpOption();
    const QCommandLineOption output(QStringLiteral("output"), QStringLiteral("For the results."),
                                    QStringLiteral("folder"), QStringLiteral("build/bench"));
    const QCommandLineOption program(QStringLiteral("program"),
                                     QStringLiteral("Glimmerpane's executable."),
                                     QStringLiteral("path"));
    const QCommandLineOption quick(QStringLiteral("quick"), QStringLiteral("Measure less."));
    const QCommandLineOption only(QStringLiteral("only"),
                                  QStringLiteral("full-motion, still-screen, latency, first-frame, "
                                                 "start-up, cycles, drag, clicks or peers."),
                                  QStringLiteral("figure"));
    parser.addOptions({output, program, quick, only});
    parser.process(application);

    const bool isQuick = parser.isSet(quick);
    const Measurement measurement{.executable = executableOr(parser.value(program)),
                                  .extent = isQuick ? quickExtent() : Extent(),
                                  .folder = QDir(parser.value(output)),
                                  .stop = signals.token(),
                                  .progress = tell};
    const auto [figures, failures] = measureAll(measurement, parser.value(only));
    if (signals.token().stop_requested()) {
        tell(QStringLiteral("glimmerpane_bench: stopped"));
        return 130;
    }
    if (figures.empty()) {
        tell(QStringLiteral("glimmerpane_bench: there is no such figure, see --help"));
        return 2;
    }
    const QString mode = isQuick ? QStringLiteral("quick: fewer and shorter runs")
                                 : QStringLiteral("full measurement");
    return writeResults(QDir(parser.value(output)), figures, mode) && failures == 0 ? 0 : 1;
}
