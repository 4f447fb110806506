// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/SharedDesktop.h"
#include "rig/Statistics.h"
#include "rig/XWindows.h"

#include <QCoreApplication>

namespace glimmerpane::bench
{

namespace
{

constexpr double target = 150; ///< milliseconds

Result<double> timeToWindow(const Desktop &desktop, const QString &program, const QString &title)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto process
        = testing::ChildProcess::start({.program = program, .environment = desktop.environment()});
    if (!process) {
        return failure(process.error());
    }
    const auto time = desktop.timeUntil(
        [&] { return testing::findWindow(desktop.client(), title).has_value(); }, begin);
    return time ? Result<double>(*time)
                : failure(QStringLiteral("%1 shows no window \"%2\"").arg(program, title));
}

/** Returns once no window of the last program is left. */
Result<double> measureOnce(const Desktop &desktop, const QString &program, const QString &title)
{
    const auto time = timeToWindow(desktop, program, title);
    const auto isGone
        = [&] { return !testing::findWindow(desktop.client(), title, testing::Listing::All); };
    if (time && !desktop.waitFor(isGone, std::chrono::seconds(10))) {
        return failure(QStringLiteral("a window stays after its program's end"));
    }
    return time;
}

} // namespace

Figures measureStartUp(const Measurement &measurement)
{
    const auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    const QString bare
        = QCoreApplication::applicationDirPath() + QStringLiteral("/glimmerpane_bare_window");
    std::vector<double> ours;
    std::vector<double> reference;
    // The first round only fills the file cache.
    for (int i = 0; i <= measurement.extent.runs; ++i) {
        const auto bareTime = measureOnce(**desktop, bare, QStringLiteral("Bare window"));
        const auto time
            = measureOnce(**desktop, measurement.executable, QStringLiteral("Glimmerpane"));
        if (!bareTime || !time) {
            return failure(time ? bareTime.error() : time.error());
        }
        if (i == 0) {
            continue;
        }
        reference.push_back(*bareTime);
        ours.push_back(*time);
        measurement.progress(QStringLiteral("start-up %1: %2 ms, bare window %3 ms")
                                 .arg(i)
                                 .arg(number(*time, 1), number(*bareTime, 1)));
    }
    const QString counted
        = QStringLiteral("from before fork and exec until the window is viewable under openbox; "
                         "files in the cache; median of %1 runs, both in turn")
              .arg(ours.size());
    return std::vector{boundedFigure(QStringLiteral("Time from start to the main window"),
                                     median(ours), target, QStringLiteral(" ms"), counted),
                       Figure{.name = QStringLiteral("Time from start to a bare window"),
                              .measured = number(median(reference)) + QStringLiteral(" ms"),
                              .counted = QStringLiteral("the same for an empty window of the same "
                                                        "toolkit, ")
                                  + counted}};
}

} // namespace glimmerpane::bench
