// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/DamageWatch.h"
#include "rig/ProcessUsage.h"
#include "rig/WaitFor.h"

namespace glimmerpane::bench
{

namespace
{

std::vector<double> measureRun(const Measurement &measurement)
{
    MeasuredDesktop desktop(measurement);
    desktop.startProgram();
    auto watch
        = required(DamageWatch::open(desktop.server.displayName(), desktop.outputWindow().value()));
    require(waitFor([&] { return !watch.take(std::chrono::seconds(1)); }, patience),
            "the output never comes to rest on an unchanging screen");
    watch.resetCount();
    const auto begin = std::chrono::steady_clock::now();
    const auto before = required(ProcessUsage::of(desktop.program.pid()));
    measurement.rest(measurement.extent.stillPhase);
    const auto after = required(ProcessUsage::of(desktop.program.pid()));
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    watch.take();
    return {static_cast<double>(watch.count()),
            (after.wakeUps() - before.wakeUps()) / time.count()};
}

} // namespace

std::vector<Figure> measureStillScreen(const Measurement &measurement)
{
    const double seconds = std::chrono::duration<double>(measurement.extent.stillPhase).count();
    const QString within = u" in %1 s"_s.arg(seconds);
    return measurement.repeat(
        {{.name = u"Frames shown, unchanging screen"_s,
          .counted = u"damage events of the output"_s + within,
          .decimals = 0,
          .atMost = 0},
         {.name = u"Wake-ups a second, unchanging screen"_s,
          .counted = u"voluntary context switches of all threads"_s + within
              + u"; the program looks every half second, and where the time is cut, one look more "
                "can fall into it"_s,
          .atMost = 2 + 1 / seconds}},
        [&] { return measureRun(measurement); });
}

} // namespace glimmerpane::bench
