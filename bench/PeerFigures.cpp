// SPDX-License-Identifier: MIT
#include "bench/Peers.h"

#include "bench/Report.h"

#include <algorithm>
#include <functional>

namespace glimmerpane::bench
{

namespace
{

constexpr double costTarget = 0.4; ///< of the cheapest other tool's
constexpr double quietTarget = 0.05;

using Value = std::function<double(const PeerRun &)>;

QString sizeText(QSize size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

const PeerResult *lowestOther(const PeerComparison &comparison, const Value &value)
{
    const PeerResult *lowest = nullptr;
    for (const PeerResult &result : comparison.results) {
        if (result.tool != Tool::Glimmerpane && !result.runs.empty()
            && (!lowest || result.medianOf(value) < lowest->medianOf(value))) {
            lowest = &result;
        }
    }
    return lowest;
}

struct Question {
    QString name;
    double target = 1; ///< in parts of the lowest other tool's
    QString unit;
    Value value;
};

Figure answer(const PeerComparison &comparison, const Question &question)
{
    const QString name
        = QStringLiteral("%1, %2").arg(question.name, sizeText(comparison.scene.size));
    const PeerResult &own = comparison.results.front();
    const PeerResult *other = lowestOther(comparison, question.value);
    if (own.runs.empty() || !other) {
        return {.name = name,
                .measured = QStringLiteral("could not be measured"),
                .counted = own.problem};
    }
    const double ours = own.medianOf(question.value);
    const double theirs = other->medianOf(question.value);
    auto figure = boundedFigure(
        name, ours / theirs, question.target, {},
        QStringLiteral("%1 %4 against %2 %4 of %3, which has least; medians "
                       "of %5 runs, see peers.md")
            .arg(number(ours, 3), number(theirs, 3), toolName(other->tool), question.unit)
            .arg(own.runs.size()));
    figure.measured = number(ours / theirs, 3);
    return figure;
}

/** Two sizes in a row: what a frame costs should grow no faster than its pixels. */
Figure growth(const PeerComparison &small, const PeerComparison &large)
{
    const auto cost = [](const PeerComparison &comparison) {
        return comparison.results.front().medianOf(&PeerRun::cost);
    };
    return boundedFigure(
        QStringLiteral("Growth of the processor time per frame, %1 to %2")
            .arg(sizeText(small.scene.size), sizeText(large.scene.size)),
        cost(large) / cost(small), large.scene.pixels() / small.scene.pixels(),
        QStringLiteral(" times"),
        QStringLiteral("program and server; the target is the growth of the area"));
}

QString row(const PeerComparison &comparison, const PeerResult &result)
{
    const QString head
        = QStringLiteral("| %1, %2 | %3 |")
              .arg(comparison.scene.name, sizeText(comparison.scene.size), toolName(result.tool));
    if (result.runs.empty()) {
        return head
            + QStringLiteral(" does not run here: %1 | | | | | | | |\n").arg(result.problem);
    }
    const auto of = [&](double PeerRun::*member, int decimals) {
        return number(result.medianOf(member), decimals);
    };
    const bool still = comparison.scene.withStill;
    const QString none = QStringLiteral("-");
    const QString latency
        = QStringLiteral("%1 / %2").arg(of(&PeerRun::latency, 1), of(&PeerRun::highLatency, 1));
    const QString cost = QStringLiteral("%1 (%2 + %3)")
                             .arg(number(result.medianOf(&PeerRun::cost), 2), of(&PeerRun::tool, 2),
                                  of(&PeerRun::server, 2));
    const QString runs = result.problem.isEmpty()
        ? QString()
        : QStringLiteral(" (%1 runs; one failed: %2)").arg(result.runs.size()).arg(result.problem);
    return head
        + QStringLiteral(" %1 | %2%9 | %3 | %4 | %5 | %6 | %7 | %8 |\n")
              .arg(of(&PeerRun::sourceRate, 1), of(&PeerRun::shownRate, 1), cost,
                   of(&PeerRun::motion, 1), still ? latency : none,
                   still ? of(&PeerRun::idle, 2) : none, still ? of(&PeerRun::wakeUps, 1) : none,
                   of(&PeerRun::memory, 0), runs);
}

QString stolenText(const std::vector<PeerComparison> &comparisons)
{
    std::vector<double> stolen;
    for (const PeerComparison &comparison : comparisons) {
        for (const PeerResult &result : comparison.results) {
            std::ranges::transform(result.runs, std::back_inserter(stolen), &PeerRun::stolen);
        }
    }
    return QStringLiteral("The host took %1 % of the processors' time from this machine in the "
                          "worst of the %2 runs of a tool, %3 % in the median one.")
        .arg(number(quantile(stolen, 1), 1))
        .arg(stolen.size())
        .arg(number(median(stolen), 1));
}

} // namespace

std::vector<Figure> peerFigures(const std::vector<PeerComparison> &comparisons)
{
    const QString cpuPerSecond = QStringLiteral("ms of processor time a second");
    std::vector<Figure> figures;
    const PeerComparison *smaller = nullptr;
    for (const PeerComparison &comparison : comparisons) {
        const PeerScene &scene = comparison.scene;
        if (scene.mode == QStringLiteral("typing")) {
            figures.push_back(answer(comparison,
                                     {QStringLiteral("Typing, part of the cheapest "
                                                     "other tool's processor time"),
                                      quietTarget, cpuPerSecond, &PeerRun::motion}));
        }
        if (!scene.isFullMotion()) {
            continue;
        }
        const Question questions[]
            = {{QStringLiteral("Full motion, part of the cheapest other tool's time per frame"),
                costTarget, QStringLiteral("ms a frame"), &PeerRun::cost},
               {QStringLiteral("Unchanging screen, part of the cheapest other tool's processor "
                               "time"),
                quietTarget, cpuPerSecond, &PeerRun::idle},
               {QStringLiteral("Latency, part of the fastest other tool's"), 1,
                QStringLiteral("ms"), &PeerRun::latency}};
        for (const Question &question : questions) {
            figures.push_back(answer(comparison, question));
        }
        if (smaller) {
            figures.push_back(growth(*smaller, comparison));
        }
        smaller = &comparison;
    }
    return figures;
}

QString peerTable(const std::vector<PeerComparison> &comparisons, const QString &mode)
{
    QString text = QStringLiteral("# Glimmerpane and what people use instead\n\n%1\n\n%2\n\n"
                                  "| Picture | Tool | Source, frames/s | Shown, frames/s | "
                                  "Processor time per shown frame, ms (tool + X server) | "
                                  "The same a second, ms | Latency, ms: median / 95 % | "
                                  "Unchanging screen, ms a second | Wake-ups a second there | "
                                  "Memory, MB |\n|---|---|---|---|---|---|---|---|---|---|\n")
                       .arg(machineText(mode), stolenText(comparisons));
    for (const PeerComparison &comparison : comparisons) {
        for (const PeerResult &result : comparison.results) {
            text += row(comparison, result);
        }
    }
    return text;
}

} // namespace glimmerpane::bench
