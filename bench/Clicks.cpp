// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/NumberedAnimation.h"
#include "rig/DamageWatch.h"
#include "rig/InputInjector.h"
#include "rig/OutputReader.h"
#include "rig/ProcessUsage.h"
#include "rig/Statistics.h"

#include <thread>

namespace glimmerpane::bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr double rateTarget = 59;
constexpr std::chrono::milliseconds ringLife{500};
constexpr std::chrono::milliseconds stormInterval{5};

struct Run {
    double steps = 0; ///< a second, while there always is one ring
    double stepCost = 0; ///< milliseconds of processor time, program and server
    double stormRate = 0; ///< frames a second
};

/** What the program and the server used and how often the output was drawn into. */
struct Spent {
    double cpu = 0; ///< milliseconds
    double seconds = 0;
    int drawn = 0;
};

Result<double> cpuOf(SharedDesktop &shared)
{
    const auto program = ProcessUsage::of(shared.program->pid());
    const auto server = ProcessUsage::of(shared.desktop->server().pid());
    if (!program || !server) {
        return failure(QStringLiteral("the program ended while it was measured"));
    }
    return std::chrono::duration<double, std::milli>(program->threadCpu() + server->threadCpu())
        .count();
}

Result<Spent> spend(const Measurement &measurement, SharedDesktop &shared,
                    testing::DamageWatch &watch, bool presses)
{
    const testing::InputInjector person(shared.desktop->client());
    watch.take();
    watch.resetCount();
    const auto before = cpuOf(shared);
    const auto begin = Clock::now();
    for (auto now = begin, next = begin; now - begin < measurement.extent.phase;
         now = Clock::now()) {
        if (presses && now >= next) {
            person.click(pointerInArea);
            next += ringLife;
        }
        watch.take(std::chrono::milliseconds(20));
    }
    const auto after = cpuOf(shared);
    if (!before || !after || shared.desktop->stopRequested()) {
        return failure(before && after ? QStringLiteral("stopped") : before.error());
    }
    return Spent{.cpu = *after - *before,
                 .seconds = std::chrono::duration<double>(Clock::now() - begin).count(),
                 .drawn = watch.count()};
}

Result<void> measureSteps(const Measurement &measurement, Run &run)
{
    auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    SharedDesktop shared{.desktop = std::move(*desktop)};
    if (const auto started = startProgram(measurement, true, shared); !started) {
        return started;
    }
    auto watch = testing::DamageWatch::open(shared.desktop->displayName(), shared.output);
    if (!watch) {
        return failure(watch.error());
    }
    while (watch->take(ringLife)) { } // the picture comes to rest
    const auto still = spend(measurement, shared, *watch, false);
    const auto ring = still ? spend(measurement, shared, *watch, true) : still;
    if (!ring || ring->drawn == 0) {
        return failure(ring ? QStringLiteral("no ring was drawn") : ring.error());
    }
    run.steps = ring->drawn / ring->seconds;
    run.stepCost = (ring->cpu - still->cpu) / ring->drawn;
    return {};
}

Result<void> measureStorm(const Measurement &measurement, Run &run)
{
    auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    SharedDesktop shared{.desktop = std::move(*desktop)};
    const auto animation = startAnimation(*shared.desktop);
    const auto started
        = animation ? startProgram(measurement, true, shared) : failure(animation.error());
    const auto view = started ? outputPicture(shared) : failure(started.error());
    const auto presser = testing::XClient::connect(shared.desktop->displayName());
    if (!view || !presser) {
        return failure(view ? presser.error() : view.error());
    }
    const std::jthread storm([&presser](const std::stop_token &stop) {
        const testing::InputInjector person(*presser);
        auto due = Clock::now();
        for (int i = 0; !stop.stop_requested(); ++i) {
            // Below the strip with the animation's number.
            constexpr QPoint corner = measuredArea.topLeft() + QPoint(100, 150);
            person.click(corner + QPoint(i * 37 % 1080, i * 53 % 470));
            due += stormInterval;
            std::this_thread::sleep_until(due);
        }
    });
    const auto seen = countFrames(*shared.desktop, *view, {}, measurement.extent.phase);
    if (!seen) {
        return failure(seen.error());
    }
    run.stormRate = seen->rate();
    return {};
}

Result<Run> measureRun(const Measurement &measurement)
{
    Run run;
    if (const auto steps = measureSteps(measurement, run); !steps) {
        return failure(steps.error());
    }
    if (const auto storm = measureStorm(measurement, run); !storm) {
        return failure(storm.error());
    }
    return run;
}

} // namespace

Figures measureClicks(const Measurement &measurement)
{
    const auto runs = repeat(measurement, measureRun, [](int i, const Run &run) {
        return QStringLiteral("clicks %1: %2 steps/s, %3 ms a step, %4 frames/s in a storm")
            .arg(i)
            .arg(number(run.steps, 1), number(run.stepCost, 3), number(run.stormRate, 1));
    });
    if (!runs) {
        return failure(runs.error());
    }
    std::vector<double> steps;
    std::vector<double> costs;
    std::vector<double> rates;
    for (const Run &run : *runs) {
        steps.push_back(run.steps);
        costs.push_back(run.stepCost);
        rates.push_back(run.stormRate);
    }
    const QString times = QStringLiteral("; median of %1 runs").arg(runs->size());
    const double rate = median(rates);
    return std::vector<Figure>{
        {.name = QStringLiteral("Steps a second of a click's ring"),
         .measured = number(median(steps), 1),
         .counted = QStringLiteral("damage events of the output on an unchanging screen, a press "
                                   "each half second")
             + times},
        {.name = QStringLiteral("Processor time per ring step"),
         .measured = number(median(costs), 3) + QStringLiteral(" ms"),
         .counted
         = QStringLiteral("program and X server, less the same time without presses") + times},
        {.name = QStringLiteral("Frames a second in a storm of presses"),
         .measured = number(rate, 1),
         .target = QStringLiteral("at least ") + QString::number(rateTarget),
         .verdict = rate >= rateTarget ? Verdict::Met : Verdict::Missed,
         .counted
         = QStringLiteral("as in full motion, with 200 presses a second all over the area") + times,
         .partOfTarget = rate > 0 ? std::optional(rateTarget / rate) : std::nullopt}};
}

} // namespace glimmerpane::bench
