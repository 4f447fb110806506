// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/Held.h"
#include "rig/WaitFor.h"

namespace glimmerpane::bench
{

namespace
{

constexpr int warmUpCycles = 20; ///< after these everything that is kept on purpose exists
constexpr int averagedCycles = 5;

void playCycle(MeasuredDesktop &desktop)
{
    desktop.input.click(desktop.awaitButton(places::startSharing));
    desktop.awaitOutputWindow();
    desktop.input.click(desktop.awaitButton(places::stopSharing));
    const auto isOver
        = [&] { return !desktop.outputWindow() && desktop.canPress(places::startSharing); };
    require(waitFor(isOver, patience), "sharing does not stop");
}

/** The median over some cycles up to this one, because each one's end finds other leftovers. */
double around(const std::vector<Held> &held, size_t cycle, double Held::*member)
{
    std::vector<double> values;
    for (size_t i = cycle - averagedCycles; i < cycle; ++i) {
        values.push_back(held[i].*member);
    }
    return median(values);
}

} // namespace

std::vector<Figure> measureCycles(const Measurement &measurement)
{
    MeasuredDesktop desktop(measurement);
    desktop.startProgram(false);
    std::vector<Held> held;
    for (int cycle = 1; cycle <= measurement.extent.cycles; ++cycle) {
        playCycle(desktop);
        held.push_back(required(heldBy(desktop.client, desktop.program.pid())));
        if (cycle % warmUpCycles == 0) {
            measurement.tell(u"cycle %1: %2"_s.arg(cycle).arg(held.back().text()));
        }
        require(!measurement.stop.stop_requested(), "stopped");
    }
    struct Kept {
        const char *name;
        double Held::*member;
        const char *unit;
        double allowed; ///< a little memory is the allocator's own noise
    };
    std::vector<Figure> figures;
    for (const Kept &kept : {Kept{"resident memory", &Held::memory, " KiB", 256},
                             {"open descriptors", &Held::descriptors, "", 0},
                             {"threads", &Held::threads, "", 0},
                             {"server resources", &Held::resources, "", 0},
                             {"server pixmaps", &Held::pixmapBytes, " bytes", 0}}) {
        const double early = around(held, warmUpCycles, kept.member);
        const double late = around(held, held.size(), kept.member);
        figures.push_back(
            {.name = u"Growth in %1 cycles, %2"_s.arg(held.size() - warmUpCycles)
                         .arg(QString::fromLatin1(kept.name)),
             .unit = QString::fromLatin1(kept.unit),
             .counted
             = u"from %1 to %2 while sharing is started and stopped by the real buttons "
               "in one process, medians of %3 cycles each"_s.arg(number(early, 0), number(late, 0))
                   .arg(averagedCycles),
             .decimals = 0,
             .atMost = kept.allowed,
             .value = late - early});
    }
    return figures;
}

} // namespace glimmerpane::bench
