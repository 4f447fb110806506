// SPDX-License-Identifier: MIT
#include "bench/Peers.h"

namespace glimmerpane::bench
{

namespace
{

const PeerResult *lowestOther(const PeerComparison &comparison, double PeerRun::*member)
{
    const PeerResult *lowest = nullptr;
    for (const PeerResult &result : comparison.results) {
        if (result.tool != Tool::Glimmerpane && !result.runs.empty()
            && (!lowest || result.medianOf(member) < lowest->medianOf(member))) {
            lowest = &result;
        }
    }
    return lowest;
}

struct Question {
    const char *name;
    double target; ///< in parts of the lowest other tool's
    const char *unit;
    double PeerRun::*member;
};

constexpr Question ofTyping{"Typing, part of the cheapest other tool's processor time", 0.05,
                            "ms of processor time a second", &PeerRun::motion};
constexpr Question ofMotion[]
    = {{"Full motion, part of the cheapest other tool's time per frame", 0.4, "ms a frame",
        &PeerRun::cost},
       {"Unchanging screen, part of the cheapest other tool's processor time", 0.05,
        "ms of processor time a second", &PeerRun::idle},
       {"Latency, part of the fastest other tool's", 1, "ms", &PeerRun::latency}};

Figure answer(const PeerComparison &comparison, const Question &question)
{
    Figure figure{
        .name = u"%1, %2"_s.arg(QString::fromLatin1(question.name), comparison.scene.sizeText()),
        .decimals = 3,
        .atMost = question.target};
    const PeerResult &own = comparison.results.front();
    const PeerResult *other = lowestOther(comparison, question.member);
    if (own.runs.empty() || !other) {
        figure.problem = own.runs.empty() ? own.problem : u"no other tool runs here"_s;
        return figure;
    }
    const double ours = own.medianOf(question.member);
    const double theirs = other->medianOf(question.member);
    figure.value = ours / theirs;
    figure.counted
        = u"%1 %4 against %2 %4 of %3, which has least; medians of %5 runs, see peers.md"_s
              .arg(number(ours, 3), number(theirs, 3), toolName(other->tool),
                   QString::fromLatin1(question.unit))
              .arg(own.runs.size());
    return figure;
}

/** Two sizes in a row: what a frame costs should grow no faster than its pixels. */
Figure growth(const PeerComparison &small, const PeerComparison &large)
{
    const auto pixels = [](QSize size) { return 1.0 * size.width() * size.height(); };
    return {.name = u"Growth of the processor time per frame, %1 to %2"_s.arg(
                small.scene.sizeText(), large.scene.sizeText()),
            .unit = u" times"_s,
            .counted = u"program and server; the target is the growth of the area"_s,
            .atMost = pixels(large.scene.size) / pixels(small.scene.size),
            .value = large.results.front().medianOf(&PeerRun::cost)
                / small.results.front().medianOf(&PeerRun::cost)};
}

QString row(const PeerScene &scene, const PeerResult &result)
{
    struct Column {
        double PeerRun::*member;
        int decimals;
        bool needsStill; ///< and is measured in full motion only
    };
    constexpr Column columns[]
        = {{&PeerRun::sourceRate, 1, false}, {&PeerRun::shownRate, 1, false},
           {&PeerRun::cost, 2, false},       {&PeerRun::tool, 2, false},
           {&PeerRun::server, 2, false},     {&PeerRun::motion, 1, false},
           {&PeerRun::latency, 1, true},     {&PeerRun::highLatency, 1, true},
           {&PeerRun::idle, 2, true},        {&PeerRun::wakeUps, 1, true},
           {&PeerRun::memory, 0, false}};
    QString text = u"| %1, %2 | %3 |"_s.arg(scene.name, scene.sizeText(), toolName(result.tool));
    for (const Column &column : columns) {
        const bool isKnown = !result.runs.empty() && (scene.isFullMotion() || !column.needsStill);
        text += u" %1 |"_s.arg(isKnown ? number(result.medianOf(column.member), column.decimals)
                                       : u"-"_s);
    }
    const QString problem = result.problem.isEmpty()
        ? QString()
        : u"%1 runs; one failed: %2"_s.arg(result.runs.size()).arg(result.problem);
    return text + u" %1 |\n"_s.arg(problem);
}

QString stolenText(const std::vector<PeerComparison> &comparisons)
{
    std::vector<double> stolen;
    for (const PeerComparison &comparison : comparisons) {
        for (const PeerResult &result : comparison.results) {
            std::ranges::transform(result.runs, std::back_inserter(stolen), &PeerRun::stolen);
        }
    }
    return u"The host took %1 % of the processors' time from this machine in the worst of the %2 "
           "runs of a tool, %3 % in the median one."_s.arg(number(quantile(stolen, 1), 1))
               .arg(stolen.size())
               .arg(number(median(stolen), 1));
}

/** A line of the plot's data: a category and the value of each tool. */
QString point(const QString &category, const PeerComparison &comparison, double PeerRun::*member)
{
    QString line = category;
    for (const PeerResult &result : comparison.results) {
        line += result.runs.empty() ? u"\t?"_s : u"\t%1"_s.arg(result.medianOf(member));
    }
    return line + u'\n';
}

/** One block for each panel, as gnuplot has it. */
QString plotData(const std::vector<PeerComparison> &comparisons)
{
    QString names = u"tool"_s;
    for (const Tool tool : tools) {
        names += u"\t\"%1\""_s.arg(toolName(tool));
    }
    names += u'\n';
    QString cost = names;
    QString latency = names;
    QString quiet = names;
    for (const PeerComparison &comparison : comparisons) {
        const PeerScene &scene = comparison.scene;
        if (!scene.isFullMotion()) {
            quiet += point(u'"' + scene.name + u'"', comparison, &PeerRun::motion);
            continue;
        }
        cost += point(scene.sizeText(), comparison, &PeerRun::cost);
        latency += point(scene.sizeText(), comparison, &PeerRun::latency);
        if (scene.size == QSize(1280, 720)) {
            quiet += point(u"unchanging"_s, comparison, &PeerRun::idle);
        }
    }
    return cost + u"\n\n"_s + latency + u"\n\n"_s + quiet;
}

} // namespace

std::vector<Figure> peerFigures(const std::vector<PeerComparison> &comparisons)
{
    std::vector<Figure> figures;
    const PeerComparison *smaller = nullptr;
    for (const PeerComparison &comparison : comparisons) {
        if (comparison.scene.mode == u"typing"_s) {
            figures.push_back(answer(comparison, ofTyping));
        }
        if (!comparison.scene.isFullMotion()) {
            continue;
        }
        for (const Question &question : ofMotion) {
            figures.push_back(answer(comparison, question));
        }
        if (smaller) {
            figures.push_back(growth(*smaller, comparison));
        }
        smaller = &comparison;
    }
    return figures;
}

void writePeers(const QDir &folder, const std::vector<PeerComparison> &comparisons, int runs)
{
    QString text
        = u"# Glimmerpane and what people use instead\n\n%1\n\n%2\n\nA frame's time is that of the "
          "processors for each shown frame.\n\n| Picture | Tool | Source, frames/s | Shown, "
          "frames/s | A frame's time, ms | by the tool | by the X server | Time a second, ms | "
          "Latency, ms: median | 95 % | Unchanging screen, ms a second | Wake-ups a second there "
          "| Memory, MB | |\n|---|---|---|---|---|---|---|---|---|---|---|---|---|---|\n"_s.arg(
              machineText(u"medians of %1 runs"_s.arg(runs)), stolenText(comparisons));
    for (const PeerComparison &comparison : comparisons) {
        for (const PeerResult &result : comparison.results) {
            text += row(comparison.scene, result);
        }
    }
    writeText(folder.filePath(u"peers.md"_s), text);
    writeText(folder.filePath(u"peers.dat"_s), plotData(comparisons));
}

} // namespace glimmerpane::bench
