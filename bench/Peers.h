// SPDX-License-Identifier: MIT
#pragma once

#include "bench/PeerTools.h"

namespace glimmerpane::bench
{

/** What happens in the area. */
struct PeerScene {
    QString name;
    QSize size; ///< of the area
    QString mode = u"full"_s; ///< as glimmerpane_pattern knows it
    int rate = 60; ///< frames a second

    bool isFullMotion() const { return mode == u"full"_s; }
    QString sizeText() const { return u"%1x%2"_s.arg(size.width()).arg(size.height()); }
};

/**
 * The results of one run of a tool. Processor time includes the server's beyond the animation's.
 */
struct PeerRun {
    double sourceRate = 0; ///< frames a second that the animation made meanwhile
    double shownRate = 0; ///< frames a second that the tool's window showed
    double tool = 0; ///< milliseconds for each frame shown
    double server = 0;
    double cost = 0; ///< both
    double motion = 0; ///< milliseconds a second while it moves, tool and server
    double latency = 0; ///< milliseconds from a change to the tool's window, median
    double highLatency = 0; ///< 95 %
    double idle = 0; ///< milliseconds a second on an unchanging screen, tool and server
    double wakeUps = 0; ///< a second, the same
    double memory = 0; ///< resident, MB
    double stolen = 0; ///< percent of the processors' time that the host took meanwhile
};

/** All runs of one tool in one scene. */
struct PeerResult {
    Tool tool = Tool::Glimmerpane;
    std::vector<PeerRun> runs{};
    QString problem{}; ///< why a run failed, if one did

    double medianOf(double PeerRun::*member) const
    {
        std::vector<double> values(runs.size());
        std::ranges::transform(runs, values.begin(), member);
        return median(values);
    }
};

struct PeerComparison {
    PeerScene scene;
    std::vector<PeerResult> results; ///< Glimmerpane's first
};

/** peers.md, a row for each scene and tool, and peers.dat to plot. */
void writePeers(const QDir &folder, const std::vector<PeerComparison> &comparisons, int runs);

/** How Glimmerpane stands against the cheapest other tool. */
std::vector<Figure> peerFigures(const std::vector<PeerComparison> &comparisons);

} // namespace glimmerpane::bench
