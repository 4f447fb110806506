// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/StopSignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace glimmerpane::bench;

namespace
{

struct Named {
    const char *name;
    std::vector<Figure> (*measure)(const Measurement &);
};

constexpr Named measurements[] = {
    {"page", &measurePage},
    {"full-motion", &measureFullMotion},
    {"still-screen", &measureStillScreen},
    {"latency", &measureLatencies},
    {"first-frame", &measureFirstFrame},
    {"start-up", &measureStartUp},
    {"cycles", &measureCycles},
    {"drag", &measureDragging},
    {"clicks", &measureClicks},
    {"gnome", &measureGnome},
    {"peers", &measurePeers},
};

constexpr Extent quick{.runs = 2,
                       .phase = std::chrono::milliseconds(1500),
                       .stillPhase = std::chrono::milliseconds(4000),
                       .changes = 30,
                       .cycles = 40};

/** Every measurement is tried; what failed is told. */
std::vector<Figure> measureAll(const Measurement &measurement, const QString &only)
{
    std::vector<Figure> figures;
    for (const Named &named : measurements) {
        const QString name = QString::fromLatin1(named.name);
        if (!only.isEmpty() && only != name) {
            continue;
        }
        try {
            std::ranges::copy(named.measure(measurement), std::back_inserter(figures));
        } catch (const Failure &problem) {
            figures.push_back({.name = name, .problem = QString::fromStdString(problem.what())});
            measurement.tell(u"%1: %2"_s.arg(name, figures.back().problem));
        }
        if (measurement.stop.stop_requested()) {
            break;
        }
    }
    return figures;
}

} // namespace

int main(int argc, char **argv)
{
    const StopSignals signals;
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures what Glimmerpane costs."_s);
    parser.addHelpOption();
    const QCommandLineOption output(u"output"_s, u"For the results."_s, u"folder"_s,
                                    u"build/bench"_s);
    const QCommandLineOption program(u"program"_s, u"Glimmerpane's executable."_s, u"path"_s,
                                     QStringLiteral(GLIMMERPANE_PROGRAM));
    const QCommandLineOption isQuick(u"quick"_s, u"Measure less."_s);
    QStringList names;
    for (const Named &named : measurements) {
        names << QString::fromLatin1(named.name);
    }
    const QCommandLineOption only(u"only"_s, u"One of: "_s + names.join(u", "_s), u"figure"_s);
    parser.addOptions({output, program, isQuick, only});
    parser.process(application);

    const Measurement measurement{.executable = QFileInfo(parser.value(program)).absoluteFilePath(),
                                  .extent = parser.isSet(isQuick) ? quick : Extent(),
                                  .folder = QDir(parser.value(output)),
                                  .stop = signals.token()};
    if (parser.isSet(only) && !names.contains(parser.value(only))) {
        measurement.tell(u"There is no such figure, see --help."_s);
        return 2;
    }
    measurement.folder.mkpath(u"."_s);
    const auto figures = measureAll(measurement, parser.value(only));
    if (measurement.stop.stop_requested()) {
        return 130;
    }
    try {
        writeResults(measurement.folder, figures,
                     parser.isSet(isQuick) ? u"quick: fewer and shorter runs"_s
                                           : u"full measurement"_s);
    } catch (const Failure &problem) {
        measurement.tell(QString::fromStdString(problem.what()));
        return 1;
    }
    return std::ranges::all_of(figures, &QString::isEmpty, &Figure::problem) ? 0 : 1;
}
