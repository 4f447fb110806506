// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/SharedDesktop.h"
#include "rig/Held.h"
#include "rig/Statistics.h"

#include <algorithm>

namespace glimmerpane::bench
{

namespace
{

constexpr int warmUpCycles = 20; ///< after these everything that is kept on purpose exists
constexpr int averagedCycles = 5;
constexpr double memoryTarget = 256; ///< KiB; less is the allocator's own noise
constexpr std::chrono::seconds cycleLimit{10};

Result<void> playCycle(SharedDesktop &shared)
{
    auto &program = *shared.program;
    if (const auto started = program.clickStart(); !started) {
        return started;
    }
    if (const auto output = program.outputWindow(); !output) {
        return failure(output.error());
    }
    if (const auto stopped = program.clickStop(); !stopped) {
        return stopped;
    }
    const auto isOver = [&] { return !program.currentOutput() && program.startButton(); };
    if (!shared.desktop->waitFor(isOver, cycleLimit)) {
        return failure(QStringLiteral("sharing does not stop"));
    }
    return {};
}

/** The median over some cycles up to this one, because each one's end finds other leftovers. */
double around(const std::vector<Held> &held, int cycle, double Held::*member)
{
    std::vector<double> values;
    for (int i = std::max(0, cycle - averagedCycles); i < cycle; ++i) {
        values.push_back(held[static_cast<size_t>(i)].*member);
    }
    return median(values);
}

Figure growth(const QString &name, const std::vector<Held> &held, double Held::*member,
              const QString &unit, double allowed)
{
    const int last = static_cast<int>(held.size());
    const double early = around(held, warmUpCycles, member);
    const double late = around(held, last, member);
    auto figure = boundedFigure(
        name, late - early, allowed, unit,
        QStringLiteral("growth from cycle %1 to cycle %2 of starting and stopping by the real "
                       "buttons in one process, medians of %3 cycles each: %4%6, then %5%6")
            .arg(warmUpCycles)
            .arg(last)
            .arg(averagedCycles)
            .arg(number(early, 0), number(late, 0), unit));
    figure.measured = number(late - early, 0) + unit;
    return figure;
}

} // namespace

Figures measureCycles(const Measurement &measurement)
{
    auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    SharedDesktop shared{.desktop = std::move(*desktop)};
    if (const auto started = startProgram(measurement, false, shared); !started) {
        return failure(started.error());
    }
    std::vector<Held> held;
    for (int cycle = 1; cycle <= measurement.extent.cycles; ++cycle) {
        const auto played = playCycle(shared);
        const auto now = played ? heldBy(shared.desktop->client(), shared.program->pid())
                                : failure(played.error());
        if (!now) {
            return failure(QStringLiteral("cycle %1: %2").arg(cycle).arg(now.error()));
        }
        held.push_back(*now);
        if (cycle % warmUpCycles == 0) {
            measurement.progress(QStringLiteral("cycle %1: %2").arg(cycle).arg(now->text()));
        }
    }
    const QString many
        = QStringLiteral("Growth in %1 cycles, ").arg(measurement.extent.cycles - warmUpCycles);
    return std::vector{
        growth(many + QStringLiteral("resident memory"), held, &Held::memory,
               QStringLiteral(" KiB"), memoryTarget),
        growth(many + QStringLiteral("open descriptors"), held, &Held::descriptors, {}, 0),
        growth(many + QStringLiteral("threads"), held, &Held::threads, {}, 0),
        growth(many + QStringLiteral("server resources"), held, &Held::resources, {}, 0),
        growth(many + QStringLiteral("server pixmaps"), held, &Held::pixmapBytes,
               QStringLiteral(" bytes"), 0)};
}

} // namespace glimmerpane::bench
