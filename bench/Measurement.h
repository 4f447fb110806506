// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Report.h"

#include <QRect>

#include <chrono>
#include <functional>
#include <stop_token>

namespace glimmerpane::bench
{

/** How much to measure. */
struct Extent {
    int runs = 5; ///< of each figure; the table shows their median
    std::chrono::milliseconds phase{4000}; ///< of counting frames and processor time
    std::chrono::milliseconds stillPhase{10000}; ///< of watching an unchanging screen
    int changes = 100; ///< isolated changes in one run
    int cycles = 200; ///< of starting and stopping in one process
};

/** The input of every measurement. */
struct Measurement {
    QString executable; ///< Glimmerpane's
    Extent extent{};
    QDir folder{}; ///< for what a measurement writes besides its figures
    std::stop_token stop{};
    std::function<void(const QString &)> progress; ///< tells the user what is happening
};

/**
 * The results of all runs of a measurement, or why one failed; `tell` describes a run's progress.
 */
template<typename Run, typename Tell>
testing::Result<std::vector<Run>> repeat(const Measurement &measurement,
                                         testing::Result<Run> (*measureRun)(const Measurement &),
                                         const Tell &tell)
{
    std::vector<Run> runs;
    for (int i = 1; i <= measurement.extent.runs; ++i) {
        const auto run = measureRun(measurement);
        if (!run) {
            return testing::failure(run.error());
        }
        measurement.progress(tell(i, *run));
        runs.push_back(*run);
    }
    return runs;
}

using Figures = testing::Result<std::vector<Figure>>;

/** A display of 1920x1080 with an area of 1280x720 to share and the main window beside it. */
inline constexpr QRect measuredArea(600, 180, 1280, 720);
inline constexpr QPoint measuredMainWindow(60, 180);
inline constexpr QPoint pointerInArea(1500, 640);

Figures measureFullMotion(const Measurement &measurement);
Figures measureStillScreen(const Measurement &measurement);
Figures measureChangeLatency(const Measurement &measurement);
Figures measureFirstFrame(const Measurement &measurement);
Figures measureStartUp(const Measurement &measurement);
Figures measureCycles(const Measurement &measurement);
Figures measureClicks(const Measurement &measurement);
Figures measureDragging(const Measurement &measurement);
Figures measurePeers(const Measurement &measurement);

} // namespace glimmerpane::bench
