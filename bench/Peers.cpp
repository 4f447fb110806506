// SPDX-License-Identifier: MIT
#include "bench/Peers.h"

#include "bench/Measurement.h"
#include "bench/NumberedAnimation.h"
#include "bench/ProcessorTime.h"
#include "bench/StolenTime.h"
#include "rig/ChangeLatency.h"
#include "rig/ProcessUsage.h"

#include <csignal>
#include <utility>

namespace glimmerpane::bench
{

namespace
{

/** A display with the animation on it. */
struct Stage {
    const Measurement &measurement;
    const PeerScene &scene;
    StageLayout layout;
    std::unique_ptr<Desktop> desktop;
    testing::ChildProcess animation;

    Result<Spent> spendFor(pid_t tool) const
    {
        return spend(*desktop, tool, layout.area.topLeft(), measurement.extent.phase * 3 / 4);
    }
    Result<Spent> spendAlone() const
    {
        return spend(*desktop, 0, layout.area.topLeft(), measurement.extent.phase / 2);
    }
};

std::vector<PeerScene> scenes()
{
    const QSize usual(1280, 720);
    std::vector<PeerScene> all;
    for (const QSize size : {QSize(640, 360), usual, QSize(1920, 1080), QSize(3840, 2160)}) {
        all.push_back({.name = QStringLiteral("full motion"), .size = size});
    }
    all.push_back({.name = QStringLiteral("moving 32x32"),
                   .size = usual,
                   .mode = QStringLiteral("cursor"),
                   .withStill = false});
    all.push_back({.name = QStringLiteral("typing"),
                   .size = usual,
                   .mode = QStringLiteral("typing"),
                   .rate = 10,
                   .withStill = false});
    return all;
}

Result<Stage> setStage(const Measurement &measurement, const PeerScene &scene)
{
    const auto layout = StageLayout::of(scene.size);
    auto desktop = Desktop::start({.screen = layout.screen, .stop = measurement.stop});
    if (!desktop) {
        return failure(desktop.error());
    }
    auto animation
        = startAnimation(**desktop, {.area = layout.area, .mode = scene.mode, .rate = scene.rate});
    if (!animation) {
        return failure(animation.error());
    }
    return Stage{measurement, scene, layout, std::move(*desktop), std::move(*animation)};
}

/** While the animation stands still. */
Result<void> measureStill(const Stage &stage, const RunningTool &tool, PeerRun &run)
{
    constexpr QSize patchSize(160, 80);
    constexpr std::chrono::microseconds pause{250};
    const QRect patch(stage.layout.area.center(), patchSize);
    // A fourth of the changes of the measure that has only one program to look at.
    const auto latencies = measureLatency(*stage.desktop,
                                          {.output = tool.view.window(),
                                           .area = stage.layout.area,
                                           .patch = patch,
                                           .changes = stage.measurement.extent.changes / 4,
                                           .pause = pause,
                                           .source = tool.source});
    if (!latencies) {
        return failure(latencies.error());
    }
    run.latency = median(*latencies);
    run.highLatency = quantile(*latencies, 0.95);
    if (!stage.desktop->rest(std::chrono::seconds(1))) {
        return failure(QStringLiteral("stopped"));
    }
    const auto spent = stage.spendFor(tool.pid());
    if (!spent) {
        return failure(spent.error());
    }
    run.idle = (spent->program + spent->server) / spent->seconds;
    run.wakeUps = static_cast<double>(spent->wakeUps) / spent->seconds;
    return {};
}

struct Motion {
    Spent spent;
    SeenFrames seen;
};

Result<Motion> measureMotion(const Stage &stage, const RunningTool &tool)
{
    if (const auto live = awaitOutput(*stage.desktop, tool.view); !live) {
        return failure(live.error());
    }
    // Buffers fill and queues run full in the first moment.
    stage.desktop->rest(std::chrono::seconds(1));
    const auto spent = stage.spendFor(tool.pid());
    const auto seen
        = countFrames(*stage.desktop, tool.view, {}, stage.measurement.extent.phase / 2);
    if (!spent || !seen) {
        return failure(spent ? seen.error() : spent.error());
    }
    if (seen->sent == 0) {
        return failure(QStringLiteral("it showed no frame"));
    }
    return Motion{.spent = *spent, .seen = *seen};
}

void addMotion(const Motion &motion, const Spent &aloneBefore, const Spent &aloneAfter,
               PeerRun &run)
{
    const Spent &spent = motion.spent;
    const double shown
        = static_cast<double>(spent.sourceFrames) * motion.seen.shown / motion.seen.sent;
    const double server = serverBeyond(spent, aloneBefore, aloneAfter);
    run.sourceRate = spent.sourceFrames / spent.seconds;
    run.shownRate = shown / spent.seconds;
    run.tool = spent.program / shown;
    run.server = server / shown;
    run.motion = (spent.program + server) / spent.seconds;
}

/** Everything that is measured while the tool runs. */
Result<Motion> measureRunning(Stage &stage, Tool kind, PeerRun &run)
{
    const auto tool = startTool(
        *stage.desktop,
        {.tool = kind, .glimmerpane = stage.measurement.executable, .layout = stage.layout});
    if (!tool) {
        return failure(tool.error());
    }
    auto motion = measureMotion(stage, *tool);
    const auto usage = ProcessUsage::of(tool->pid());
    if (!motion || !usage) {
        return failure(motion ? usage.error() : motion.error());
    }
    run.memory = static_cast<double>(usage->residentBytes) / 1e6;
    if (!stage.scene.withStill) {
        return motion;
    }
    stage.animation.sendSignal(SIGSTOP);
    const auto still = measureStill(stage, *tool, run);
    stage.animation.sendSignal(SIGCONT);
    return still ? motion : failure(still.error());
}

/** `alone` is the animation's own share just before, and afterwards the one just after. */
Result<PeerRun> measureTool(Stage &stage, Tool kind, Spent &alone)
{
    const StolenTime stolen;
    PeerRun run;
    const auto motion = measureRunning(stage, kind, run);
    const auto after = stage.spendAlone();
    if (!after) {
        return failure(after.error());
    }
    const Spent before = std::exchange(alone, *after);
    if (!motion) {
        return failure(motion.error());
    }
    addMotion(*motion, before, *after, run);
    run.stolen = stolen.percent();
    return run;
}

QString wordsFor(const PeerRun &run)
{
    return QStringLiteral("source %1/s, shown %2/s, %3 + %4 ms a frame, %5 ms/s, latency %6 (%7) "
                          "ms, idle %8 ms/s, %9 wake-ups/s, %10 MB, stolen %11 %")
        .arg(number(run.sourceRate, 1), number(run.shownRate, 1), number(run.tool, 3),
             number(run.server, 3), number(run.motion, 1), number(run.latency),
             number(run.highLatency), number(run.idle), number(run.wakeUps, 1))
        .arg(number(run.memory, 0), number(run.stolen, 1));
}

/** One run of every tool, one after the other on the same display. */
Result<void> measureScene(const Measurement &measurement, PeerComparison &comparison)
{
    auto stage = setStage(measurement, comparison.scene);
    if (!stage) {
        return failure(stage.error());
    }
    auto alone = stage->spendAlone();
    if (!alone) {
        return failure(alone.error());
    }
    for (PeerResult &result : comparison.results) {
        const auto run = measureTool(*stage, result.tool, *alone);
        if (measurement.stop.stop_requested()) {
            return failure(QStringLiteral("stopped"));
        }
        measurement.progress(QStringLiteral("%1 %2x%3, %4: %5")
                                 .arg(comparison.scene.name)
                                 .arg(comparison.scene.size.width())
                                 .arg(comparison.scene.size.height())
                                 .arg(toolName(result.tool), run ? wordsFor(*run) : run.error()));
        if (run) {
            result.runs.push_back(*run);
        } else {
            result.problem = run.error();
        }
    }
    return {};
}

Result<void> writeReport(const Measurement &measurement,
                         const std::vector<PeerComparison> &comparisons)
{
    const QDir &folder = measurement.folder;
    folder.mkpath(QStringLiteral("."));
    const QString mode = QStringLiteral("medians of %1 runs").arg(measurement.extent.runs);
    const auto table
        = writeText(folder.filePath(QStringLiteral("peers.md")), peerTable(comparisons, mode));
    return table ? writeText(folder.filePath(QStringLiteral("peers.svg")), peerPlot(comparisons))
                 : table;
}

} // namespace

Figures measurePeers(const Measurement &measurement)
{
    std::vector<PeerComparison> comparisons;
    for (const PeerScene &scene : scenes()) {
        comparisons.push_back({.scene = scene, .results = {}});
        for (const Tool tool : tools) {
            comparisons.back().results.push_back({.tool = tool, .runs = {}, .problem = {}});
        }
    }
    // Run by run, so that an hour in which the machine is slow favours no scene.
    for (int i = 0; i < measurement.extent.runs; ++i) {
        for (PeerComparison &comparison : comparisons) {
            if (const auto done = measureScene(measurement, comparison); !done) {
                return failure(done.error());
            }
        }
    }
    if (const auto written = writeReport(measurement, comparisons); !written) {
        return failure(written.error());
    }
    return peerFigures(comparisons);
}

} // namespace glimmerpane::bench
