// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/SharedDesktop.h"
#include "rig/ChangeLatency.h"
#include "rig/Statistics.h"

namespace glimmerpane::bench
{

namespace
{

constexpr QRect patch(1000, 400, 240, 120);
constexpr double medianTarget = 1; ///< milliseconds

Result<std::vector<double>> measureRun(const Measurement &measurement, bool compositor)
{
    auto desktop = startDesktop(measurement, compositor);
    if (!desktop) {
        return failure(desktop.error());
    }
    SharedDesktop shared{.desktop = std::move(*desktop)};
    if (const auto started = startProgram(measurement, true, shared); !started) {
        return failure(started.error());
    }
    return measureLatency(*shared.desktop,
                          {.output = shared.output,
                           .area = measuredArea,
                           .patch = patch,
                           .changes = measurement.extent.changes});
}

Figures measureWith(const Measurement &measurement, bool compositor)
{
    const QString session
        = compositor ? QStringLiteral("with picom") : QStringLiteral("no compositor");
    std::vector<double> medians;
    std::vector<double> high;
    double longest = 0;
    for (int i = 1; i <= measurement.extent.runs; ++i) {
        const auto times = measureRun(measurement, compositor);
        if (!times) {
            return failure(times.error());
        }
        medians.push_back(median(*times));
        high.push_back(quantile(*times, 0.95));
        longest = std::max(longest, quantile(*times, 1));
        measurement.progress(
            QStringLiteral("latency %1 %2: median %3 ms, 95 % %4 ms, longest %5 ms")
                .arg(session)
                .arg(i)
                .arg(number(medians.back(), 3), number(high.back()), number(quantile(*times, 1))));
    }
    const QString counted
        = QStringLiteral("from the server's acknowledgement of a colour change until one pixel "
                         "read from the output's pixmap has it, read as fast as possible; %1 "
                         "changes a run, %2 runs: ")
              .arg(measurement.extent.changes)
              .arg(measurement.extent.runs);
    const QString unit = QStringLiteral(" ms");
    const QString name = QStringLiteral("Latency of an isolated change, %1").arg(session);
    Figure typical{.name = name,
                   .measured = number(median(medians)) + unit,
                   .counted = counted + QStringLiteral("median of the medians")};
    if (!compositor) {
        typical = boundedFigure(name, median(medians), medianTarget, unit, typical.counted);
    }
    return std::vector{typical,
                       Figure{.name = name + QStringLiteral(", 95 %"),
                              .measured = number(median(high)) + unit,
                              .counted = counted + QStringLiteral("median of the 95 % marks")},
                       Figure{.name = name + QStringLiteral(", longest"),
                              .measured = number(longest) + unit,
                              .counted = counted + QStringLiteral("longest of all")}};
}

} // namespace

Figures measureChangeLatency(const Measurement &measurement)
{
    auto figures = measureWith(measurement, false);
    if (!figures) {
        return figures;
    }
    const auto composited = measureWith(measurement, true);
    if (!composited) {
        return composited;
    }
    figures->insert(figures->end(), composited->begin(), composited->end());
    return figures;
}

} // namespace glimmerpane::bench
