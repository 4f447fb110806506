// SPDX-License-Identifier: MIT
#include "bench/StolenTime.h"

#include <QFile>

namespace glimmerpane::bench
{

StolenTime::StolenTime()
    : begin_(now())
{
}

StolenTime::Ticks StolenTime::now()
{
    // proc_stat(5): user nice system idle iowait irq softirq steal; the guests' are in user.
    constexpr int stealField = 8;
    QFile file(QStringLiteral("/proc/stat"));
    Ticks ticks;
    if (!file.open(QIODevice::ReadOnly)) {
        return ticks;
    }
    const auto fields = file.readLine().simplified().split(' ');
    for (int i = 1; i <= stealField && i < fields.size(); ++i) {
        ticks.all += fields[i].toDouble();
    }
    ticks.stolen = fields.value(stealField).toDouble();
    return ticks;
}

double StolenTime::percent() const
{
    const Ticks end = now();
    const double all = end.all - begin_.all;
    return all > 0 ? (end.stolen - begin_.stolen) / all * 100 : 0;
}

} // namespace glimmerpane::bench
