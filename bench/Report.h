// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Result.h"

#include <QDir>

#include <optional>
#include <vector>

namespace glimmerpane::bench
{

using namespace testing;

enum class Verdict { None, Met, Missed };

/** One line of the table. */
struct Figure {
    QString name;
    QString measured; ///< with its unit
    QString target{}; ///< empty if there is none
    Verdict verdict = Verdict::None;
    QString counted; ///< what exactly was counted, and how often
    std::optional<double> partOfTarget{}; ///< for the plot; 1 is exactly the target
};

/** A figure with an upper bound, `unit` after both numbers. */
Figure boundedFigure(const QString &name, double measured, double target, const QString &unit,
                     const QString &counted);

/** The machine, the time, its load and how it was measured, in one sentence. */
QString machineText(const QString &mode);

QString number(double value, int decimals = 2);

/** Markdown, with a head that says on what machine it was measured. */
QString table(const std::vector<Figure> &figures, const QString &mode);

/** A bar for each figure that has a target, as an SVG picture. */
QString plot(const std::vector<Figure> &figures);

testing::Result<void> writeText(const QString &path, const QString &text);

} // namespace glimmerpane::bench
