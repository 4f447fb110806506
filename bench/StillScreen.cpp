// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/SharedDesktop.h"
#include "rig/DamageWatch.h"
#include "rig/ProcessUsage.h"
#include "rig/Statistics.h"

#include <map>

namespace glimmerpane::bench
{

namespace
{

constexpr double watchesPerSecond = 2; ///< the program looks every half second

struct Run {
    int frames = 0;
    double seconds = 0;
    double wakeUps = 0; ///< a second, all threads
    std::map<QString, double> wakeUpsByThread{}; ///< a second
};

/** Until nothing has been drawn into the output for a second. */
Result<void> awaitQuiet(const Desktop &desktop, testing::DamageWatch &watch)
{
    constexpr std::chrono::seconds quiet{1};
    constexpr int attempts = 15;
    for (int i = 0; i < attempts && !desktop.stopRequested(); ++i) {
        if (!watch.take(quiet)) {
            return {};
        }
        desktop.rest(std::chrono::milliseconds(200));
    }
    return failure(QStringLiteral("the output never comes to rest on an unchanging screen"));
}

void addWakeUps(const ProcessUsage &before, const ProcessUsage &after, Run &run)
{
    std::map<pid_t, uint64_t> earlier;
    for (const auto &thread : before.threads) {
        earlier[thread.id] = thread.wakeUps;
    }
    for (const auto &thread : after.threads) {
        run.wakeUpsByThread[thread.name]
            += static_cast<double>(thread.wakeUps - earlier[thread.id]) / run.seconds;
    }
    for (const auto &[name, rate] : run.wakeUpsByThread) {
        run.wakeUps += rate;
    }
}

Result<Run> measureRun(const Measurement &measurement)
{
    auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    SharedDesktop shared{.desktop = std::move(*desktop)};
    if (const auto started = startProgram(measurement, true, shared); !started) {
        return failure(started.error());
    }
    auto watch = testing::DamageWatch::open(shared.desktop->displayName(), shared.output);
    if (!watch) {
        return failure(watch.error());
    }
    if (const auto quiet = awaitQuiet(*shared.desktop, *watch); !quiet) {
        return failure(quiet.error());
    }
    watch->resetCount();
    const auto begin = std::chrono::steady_clock::now();
    const auto end = begin + measurement.extent.stillPhase;
    const auto before = ProcessUsage::of(shared.program->pid());
    while (std::chrono::steady_clock::now() < end) {
        if (shared.desktop->stopRequested()) {
            return failure(QStringLiteral("stopped"));
        }
        watch->take(std::chrono::milliseconds(100));
    }
    const auto after = ProcessUsage::of(shared.program->pid());
    if (!before || !after) {
        return failure(QStringLiteral("the program ended while it was measured"));
    }
    Run run{.frames = watch->count(),
            .seconds
            = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count()};
    addWakeUps(*before, *after, run);
    return run;
}

QString threadText(const std::vector<Run> &runs)
{
    std::map<QString, std::vector<double>> rates;
    for (const Run &run : runs) {
        for (const auto &[name, rate] : run.wakeUpsByThread) {
            rates[name].push_back(rate);
        }
    }
    QStringList parts;
    for (const auto &[name, values] : rates) {
        parts << QStringLiteral("%1 %2").arg(name, number(median(values)));
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace

Figures measureStillScreen(const Measurement &measurement)
{
    const auto runs = repeat(measurement, measureRun, [](int i, const Run &run) {
        return QStringLiteral("still screen %1: %2 frames, %3 wake-ups a second (%4)")
            .arg(i)
            .arg(run.frames)
            .arg(number(run.wakeUps), threadText({run}));
    });
    if (!runs) {
        return failure(runs.error());
    }
    std::vector<double> frames;
    std::vector<double> wakeUps;
    for (const Run &run : *runs) {
        frames.push_back(run.frames);
        wakeUps.push_back(run.wakeUps);
    }
    const double seconds = runs->front().seconds;
    const QString times
        = QStringLiteral(", in %1 s; median of %2 runs").arg(number(seconds, 0)).arg(runs->size());
    // Where the time is cut, one look more can fall into it.
    const double target = watchesPerSecond + 1 / seconds;
    auto wakeUpFigure = boundedFigure(QStringLiteral("Wake-ups a second, unchanging screen"),
                                      median(wakeUps), target, {},
                                      QStringLiteral("voluntary context switches of all threads")
                                          + times + QStringLiteral(" (%1)").arg(threadText(*runs)));
    wakeUpFigure.partOfTarget = median(wakeUps) / watchesPerSecond;
    wakeUpFigure.target = QStringLiteral("2, its half-second watch");
    return std::vector{boundedFigure(QStringLiteral("Frames shown, unchanging screen"),
                                     median(frames), 0, {},
                                     QStringLiteral("damage events of the output") + times),
                       wakeUpFigure};
}

} // namespace glimmerpane::bench
