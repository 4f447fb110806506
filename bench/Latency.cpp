// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"

namespace glimmerpane::bench
{

namespace
{

constexpr QRect patch(1000, 400, 240, 120);

std::vector<double> measureRun(const Measurement &measurement, WindowManager manager)
{
    MeasuredDesktop desktop(measurement, manager);
    desktop.startProgram();
    const auto times = measureLatency(desktop.client,
                                      {.output = desktop.outputWindow().value(),
                                       .area = measuredArea,
                                       .patch = patch,
                                       .changes = measurement.extent.changes});
    return {median(times), quantile(times, 0.95), quantile(times, 1)};
}

std::vector<Figure> measureWith(const Measurement &measurement, WindowManager manager,
                                const QString &session, std::optional<double> target)
{
    const QString counted
        = u"from the server's acknowledgement of a colour change until one pixel read from the "
          "output's pixmap has it, read as fast as possible; %1 changes a run"_s.arg(
              measurement.extent.changes);
    const QString name = u"Latency of an isolated change, "_s + session;
    return measurement.repeat(
        {{.name = name,
          .unit = u" ms"_s,
          .counted = counted + u", their median"_s,
          .atMost = target},
         {.name = name + u", 95 %"_s,
          .unit = u" ms"_s,
          .counted = counted + u", their 95 % mark"_s},
         {.name = name + u", longest"_s, .unit = u" ms"_s, .counted = counted, .pick = longestOf}},
        [&] { return measureRun(measurement, manager); });
}

} // namespace

std::vector<Figure> measureLatencies(const Measurement &measurement)
{
    auto figures = measureWith(measurement, WindowManager::Openbox, u"no compositor"_s, 1);
    std::ranges::copy(
        measureWith(measurement, WindowManager::OpenboxAndPicom, u"with picom"_s, std::nullopt),
        std::back_inserter(figures));
    return figures;
}

} // namespace glimmerpane::bench
