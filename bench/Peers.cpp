// SPDX-License-Identifier: MIT
#include "bench/Peers.h"

#include "rig/ProcessUsage.h"

#include <QFile>

#include <csignal>
#include <utility>

namespace glimmerpane::bench
{

namespace
{

std::vector<PeerComparison> comparisonsToMake()
{
    const QSize usual(1280, 720);
    std::vector<PeerComparison> all;
    for (const QSize size : {QSize(640, 360), usual, QSize(1920, 1080), QSize(3840, 2160)}) {
        all.push_back({.scene = {.name = u"full motion"_s, .size = size}, .results = {}});
    }
    all.push_back(
        {.scene = {.name = u"moving 32x32"_s, .size = usual, .mode = u"cursor"_s}, .results = {}});
    all.push_back({.scene = {.name = u"typing"_s, .size = usual, .mode = u"typing"_s, .rate = 10},
                   .results = {}});
    for (PeerComparison &comparison : all) {
        for (const Tool tool : tools) {
            comparison.results.push_back({.tool = tool});
        }
    }
    return all;
}

/** How much of its processors' time a virtual machine lost to its host, in clock ticks. */
struct StolenTime {
    double stolen = 0;
    double all = 0;

    static StolenTime now()
    {
        // proc_stat(5): user nice system idle iowait irq softirq steal; the guests' are in user.
        constexpr int stealField = 8;
        QFile file(u"/proc/stat"_s);
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const auto fields = (isOpen ? file.readLine() : QByteArray()).simplified().split(' ');
        StolenTime time{.stolen = fields.value(stealField).toDouble()};
        for (int i = 1; i <= stealField; ++i) {
            time.all += fields.value(i).toDouble();
        }
        return time;
    }
    double percentUntil(const StolenTime &end) const
    {
        return end.all > all ? (end.stolen - stolen) / (end.all - all) * 100 : 0;
    }
};

/** A display with the animation on it. */
struct Stage : MeasuredDesktop {
    Stage(const Measurement &given, const PeerScene &shown)
        : MeasuredDesktop(given, WindowManager::Openbox, StageLayout::of(shown.size).screen)
        , scene(shown)
        , animation(animate({.area = layout.area, .mode = scene.mode, .rate = scene.rate}))
    {
    }

    Spent spendFor(pid_t tool) const
    {
        return spend(tool, measurement.extent.phase * 3 / 4, layout.area.topLeft());
    }
    Spent spendAlone() const
    {
        return spend(0, measurement.extent.phase / 2, layout.area.topLeft());
    }
    void measureStill(const RunningTool &tool, PeerRun &run) const;
    PeerRun measureRunning(Tool kind, const Spent &before);

    const PeerScene scene;
    const StageLayout layout = StageLayout::of(scene.size);
    ChildProcess animation;
};

/** While the animation stands still. */
void Stage::measureStill(const RunningTool &tool, PeerRun &run) const
{
    constexpr QSize patchSize(160, 80);
    // A fourth of the changes of the measure that has only one program to look at.
    const auto latencies = measureLatency(client,
                                          {.output = tool.view.window(),
                                           .area = layout.area,
                                           .patch = QRect(layout.area.center(), patchSize),
                                           .changes = measurement.extent.changes / 4,
                                           .pause = std::chrono::microseconds(250),
                                           .source = tool.source});
    run.latency = median(latencies);
    run.highLatency = quantile(latencies, 0.95);
    measurement.rest(std::chrono::seconds(1));
    const auto spent = spendFor(tool.pid);
    run.idle = (spent.program + spent.server) / spent.seconds;
    run.wakeUps = spent.wakeUps / spent.seconds;
}

/** `before` is the animation's own share. */
PeerRun Stage::measureRunning(Tool kind, const Spent &before)
{
    const auto stolen = StolenTime::now();
    PeerRun run;
    Spent spent;
    SeenFrames seen;
    {
        const auto tool = startTool(*this, kind, layout);
        awaitMotion(tool.view);
        // Buffers fill and queues run full in the first moment.
        measurement.rest(std::chrono::seconds(1));
        spent = spendFor(tool.pid);
        seen = countFrames(server.displayName(), tool.view, {}, measurement.extent.phase / 2);
        run.memory = static_cast<double>(required(ProcessUsage::of(tool.pid)).residentBytes) / 1e6;
        if (scene.isFullMotion()) {
            animation.sendSignal(SIGSTOP);
            measureStill(tool, run);
            animation.sendSignal(SIGCONT);
        }
        program = {}; // Glimmerpane, if it is that
    }
    const auto cost = costOf(spent, seen, before, spendAlone());
    run.sourceRate = spent.sourceFrames / spent.seconds;
    run.shownRate = cost.shown / spent.seconds;
    run.tool = cost.program;
    run.server = cost.server;
    run.cost = cost.program + cost.server;
    run.motion = run.cost * run.shownRate;
    run.stolen = stolen.percentUntil(StolenTime::now());
    return run;
}

QString wordsFor(const PeerRun &run)
{
    return u"source %1/s, shown %2/s, %3 + %4 ms a frame, %5 ms/s, latency %6 (%7) ms, idle %8 "
           "ms/s, %9 wake-ups/s, "_s.arg(
               number(run.sourceRate, 1), number(run.shownRate, 1), number(run.tool, 3),
               number(run.server, 3), number(run.motion, 1), number(run.latency),
               number(run.highLatency), number(run.idle), number(run.wakeUps, 1))
        + u"%1 MB, stolen %2 %"_s.arg(number(run.memory, 0), number(run.stolen, 1));
}

/** One run of every tool, one after the other on the same display. */
void measureScene(const Measurement &measurement, PeerComparison &comparison)
{
    Stage stage(measurement, comparison.scene);
    for (PeerResult &result : comparison.results) {
        QString words;
        try {
            result.runs.push_back(stage.measureRunning(result.tool, stage.spendAlone()));
            words = wordsFor(result.runs.back());
        } catch (const Failure &problem) { // it does not run here
            stage.animation.sendSignal(SIGCONT);
            words = result.problem = QString::fromStdString(problem.what());
        }
        require(!measurement.stop.stop_requested(), "stopped");
        measurement.tell(u"%1 %2, %3: %4"_s.arg(comparison.scene.name, comparison.scene.sizeText(),
                                                toolName(result.tool), words));
    }
}

} // namespace

std::vector<Figure> measurePeers(const Measurement &measurement)
{
    auto comparisons = comparisonsToMake();
    // Run by run, so that an hour in which the machine is slow favours no scene.
    for (int i = 0; i < measurement.extent.runs; ++i) {
        for (PeerComparison &comparison : comparisons) {
            measureScene(measurement, comparison);
        }
    }
    writePeers(measurement.folder, comparisons, measurement.extent.runs);
    return peerFigures(comparisons);
}

} // namespace glimmerpane::bench
