// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QCoreApplication>

namespace glimmerpane::bench
{

namespace
{

/** Returns once no window of the program is left. */
double timeToWindow(const MeasuredDesktop &desktop, const QString &program, const QString &title)
{
    const auto isThere
        = [&](Listing listing) { return findWindow(desktop.client, title, listing).has_value(); };
    const auto begin = std::chrono::steady_clock::now();
    auto process
        = required(ChildProcess::start({.program = program, .environment = desktop.environment}));
    const double time
        = timeUntil([&] { return isThere(Listing::Picker); }, begin, "a window is missing");
    process.terminate();
    require(waitFor([&] { return !isThere(Listing::All); }, patience),
            "a window stays after its program's end");
    return time;
}

} // namespace

std::vector<Figure> measureStartUp(const Measurement &measurement)
{
    const MeasuredDesktop desktop(measurement);
    const auto run = [&] {
        const QString bare = QCoreApplication::applicationDirPath() + u"/glimmerpane_bare_window"_s;
        return std::vector{timeToWindow(desktop, measurement.executable, u"Glimmerpane"_s),
                           timeToWindow(desktop, bare, u"Bare window"_s)};
    };
    run(); // which only fills the file cache
    const QString counted = u"from before fork and exec until the window is viewable under "
                            "openbox; files in the cache; both in turn"_s;
    return measurement.repeat(
        {{.name = u"Time from start to the main window"_s,
          .unit = u" ms"_s,
          .counted = counted,
          .atMost = 150},
         {.name = u"Time from start to a bare window"_s,
          .unit = u" ms"_s,
          .counted = u"the same for an empty window of the same toolkit, "_s + counted}},
        run);
}

} // namespace glimmerpane::bench
