// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Result.h"
#include "rig/Statistics.h"

#include <QDir>

#include <numeric>
#include <optional>

namespace glimmerpane::bench
{

using namespace testing;
using namespace Qt::StringLiterals;

/** How the values of several runs become one. */
struct Pick {
    const char *name;
    double (*of)(const std::vector<double> &);
};

inline constexpr Pick medianOf{"median", &median};
inline constexpr Pick sumOf{"sum", [](const std::vector<double> &values) {
                                return std::accumulate(values.begin(), values.end(), 0.0);
                            }};
inline constexpr Pick longestOf{
    "longest", [](const std::vector<double> &values) { return quantile(values, 1); }};

/** One line of the table. */
struct Figure {
    QString name;
    QString unit{}; ///< after the number
    QString counted{}; ///< what exactly was counted
    int decimals = 2;
    std::optional<double> atMost{}; ///< the target, if there is one
    std::optional<double> atLeast{}; ///< the same
    Pick pick = medianOf;
    double value = 0;
    QString problem{}; ///< why it could not be measured, if so

    QString measured() const;
    /** 1 is exactly the target, more has missed it. */
    std::optional<double> partOfTarget() const;
};

QString number(double value, int decimals = 2);

/** The machine, the time, its load and how it was measured, in one sentence. */
QString machineText(const QString &mode, const QString &display = u"Xvfb"_s);

/** results.md with a head that says on what machine it was measured, and results.dat to plot. */
void writeResults(const QDir &folder, const std::vector<Figure> &figures, const QString &mode);

void writeText(const QString &path, const QString &text);

} // namespace glimmerpane::bench
