// SPDX-License-Identifier: MIT
#pragma once

#include "bench/PeerTools.h"
#include "bench/Report.h"
#include "rig/Statistics.h"

#include <vector>

namespace glimmerpane::bench
{

/** What happens in the area. */
struct PeerScene {
    QString name;
    QSize size; ///< of the area
    QString mode = QStringLiteral("full"); ///< as glimmerpane_pattern knows it
    int rate = 60; ///< frames a second
    bool withStill = true; ///< whether the unchanging screen and the latency are measured, too

    bool isFullMotion() const { return withStill; }
    double pixels() const { return static_cast<double>(size.width()) * size.height(); }
};

/** What one run of a tool gave. Processor time includes the server's beyond the animation's. */
struct PeerRun {
    double sourceRate = 0; ///< frames a second that the animation made meanwhile
    double shownRate = 0; ///< frames a second that the tool's window showed
    double tool = 0; ///< milliseconds for each frame shown
    double server = 0;
    double motion = 0; ///< milliseconds a second while it moves, tool and server
    double latency = 0; ///< milliseconds from a change to the tool's window, median
    double highLatency = 0; ///< 95 %
    double idle = 0; ///< milliseconds a second on an unchanging screen, tool and server
    double wakeUps = 0; ///< a second, the same
    double memory = 0; ///< resident, MB
    double stolen = 0; ///< percent of the processors' time that the host took meanwhile

    double cost() const { return tool + server; }
};

/** All runs of one tool in one scene. */
struct PeerResult {
    Tool tool = Tool::Glimmerpane;
    std::vector<PeerRun> runs;
    QString problem; ///< why a run failed, if one did

    template<typename Value>
    double medianOf(Value value) const
    {
        std::vector<double> values;
        for (const PeerRun &run : runs) {
            values.push_back(std::invoke(value, run));
        }
        return median(values);
    }
};

struct PeerComparison {
    PeerScene scene;
    std::vector<PeerResult> results; ///< Glimmerpane's first
};

/** Markdown: a row for each scene and tool. */
QString peerTable(const std::vector<PeerComparison> &comparisons, const QString &mode);

/** An SVG picture of the same. */
QString peerPlot(const std::vector<PeerComparison> &comparisons);

/** How Glimmerpane stands against the cheapest other tool. */
std::vector<Figure> peerFigures(const std::vector<PeerComparison> &comparisons);

} // namespace glimmerpane::bench
