// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/DamageWatch.h"
#include "rig/ProcessUsage.h"

#include <thread>

namespace glimmerpane::bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds ringLife{500};
constexpr std::chrono::milliseconds stormInterval{5};

/** What the program and the server used and how often the output was drawn into. */
struct Used {
    double cpu = 0; ///< milliseconds
    double seconds = 0;
    int drawn = 0;
};

double cpuOf(const MeasuredDesktop &desktop)
{
    return required(ProcessUsage::of(desktop.program.pid())).cpu()
        + required(ProcessUsage::of(desktop.server.pid())).cpu();
}

Used use(const MeasuredDesktop &desktop, DamageWatch &watch, bool presses)
{
    watch.take();
    watch.resetCount();
    const double before = cpuOf(desktop);
    const auto begin = Clock::now();
    for (auto now = begin, next = begin; now - begin < desktop.measurement.extent.phase;
         now = Clock::now()) {
        if (presses && now >= next) {
            desktop.input.click(pointerInArea);
            next += ringLife;
        }
        watch.take(std::chrono::milliseconds(20));
    }
    return {.cpu = cpuOf(desktop) - before,
            .seconds = std::chrono::duration<double>(Clock::now() - begin).count(),
            .drawn = watch.count()};
}

double stormRate(const Measurement &measurement)
{
    MeasuredDesktop desktop(measurement);
    const auto animation = desktop.animate();
    desktop.startProgram();
    const auto output = desktop.movingOutput();
    const auto presser = required(XClient::connect(desktop.server.displayName()));
    const std::jthread storm([&presser](const std::stop_token &stop) {
        const InputInjector person(presser);
        auto due = Clock::now();
        for (int i = 0; !stop.stop_requested(); ++i) {
            // Below the strip with the animation's number.
            constexpr QPoint corner = measuredArea.topLeft() + QPoint(100, 150);
            person.click(corner + QPoint(i * 37 % 1080, i * 53 % 470));
            due += stormInterval;
            std::this_thread::sleep_until(due);
        }
    });
    return countFrames(desktop.server.displayName(), output, {}, measurement.extent.phase).rate();
}

std::vector<double> measureRun(const Measurement &measurement)
{
    MeasuredDesktop desktop(measurement);
    desktop.startProgram();
    auto watch
        = required(DamageWatch::open(desktop.server.displayName(), desktop.outputWindow().value()));
    while (watch.take(ringLife)) { } // the picture comes to rest
    const auto still = use(desktop, watch, false);
    const auto ring = use(desktop, watch, true);
    require(ring.drawn > 0, "no ring was drawn");
    return {ring.drawn / ring.seconds, (ring.cpu - still.cpu) / ring.drawn, stormRate(measurement)};
}

} // namespace

std::vector<Figure> measureClicks(const Measurement &measurement)
{
    return measurement.repeat(
        {{.name = u"Steps a second of a click's ring"_s,
          .counted = u"damage events of the output on an unchanging screen, a press each half "
                     "second"_s,
          .decimals = 1},
         {.name = u"Processor time per ring step"_s,
          .unit = u" ms"_s,
          .counted = u"program and X server, less the same time without presses"_s,
          .decimals = 3},
         {.name = u"Frames a second in a storm of presses"_s,
          .counted = u"as in full motion, with 200 presses a second all over the area"_s,
          .decimals = 1,
          .atLeast = 59}},
        [&] { return measureRun(measurement); });
}

} // namespace glimmerpane::bench
