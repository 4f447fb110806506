// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Desktop.h"

#include <QPoint>

namespace glimmerpane::bench
{

/** What was used in a time while the numbered animation is on the screen. */
struct Spent {
    double seconds = 0;
    double server = 0; ///< milliseconds of processor time
    double program = 0;
    uint64_t wakeUps = 0; ///< of the program
    uint32_t sourceFrames = 0;
};

/**
 * Lets the time pass and tells what was spent in it; a pid of 0 stands for no program. The
 * animation's corner is in root pixels.
 */
Result<Spent> spend(Desktop &desktop, pid_t program, QPoint corner, std::chrono::milliseconds time);

/**
 * What the server used beyond the animation's own share, as far as that is known from the time
 * before and the time after, so that a machine that changes its speed favours neither side.
 */
double serverBeyond(const Spent &spent, const Spent &aloneBefore, const Spent &aloneAfter);

} // namespace glimmerpane::bench
