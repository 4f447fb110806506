// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QRectF>
#include <QSize>

#include <vector>

namespace glimmerpane::gnome
{

/** A part of the stage that monitors show. */
struct StageView {
    QRectF place; ///< the stage's units
    double scale = 1; ///< pixels for each unit
};

/** Mutter's stage, which has all monitors. */
struct Stage {
    QSize size; ///< in its own units; empty if mutter does not say
    std::vector<StageView> views;
};

/** Main thread. */
QCoro::Task<Stage> stage();

/**
 * How many pixels a recording of this area has for each of Xwayland's. Both rectangles are in the
 * latter; `desktop` has all displays. Waits for the shell, but not long.
 */
double magnification(QRect area, QRect desktop);

} // namespace glimmerpane::gnome
