// SPDX-License-Identifier: MIT
#include "rig/ProcessUsage.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

namespace glimmerpane::testing
{

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** The number after "name:" in a /proc status file. */
uint64_t field(const QByteArray &status, const QByteArray &name)
{
    const auto start = status.indexOf('\n' + name + ':');
    if (start < 0) {
        return 0;
    }
    const auto from = start + name.size() + 2;
    return status.mid(from, status.indexOf('\n', from) - from)
        .simplified()
        .split(' ')
        .front()
        .toULongLong();
}

std::chrono::nanoseconds tickedCpu(const QByteArray &stat)
{
    // The second field is the name in parentheses and may hold spaces.
    const auto fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    constexpr int userTime = 11;
    constexpr int systemTime = 12;
    if (fields.size() <= systemTime) {
        return {};
    }
    const auto ticks = fields[userTime].toULongLong() + fields[systemTime].toULongLong();
    const auto perSecond = static_cast<uint64_t>(sysconf(_SC_CLK_TCK));
    return std::chrono::nanoseconds(ticks * 1'000'000'000ULL / perSecond);
}

ThreadUsage threadUsage(const QString &folder, pid_t id)
{
    const QByteArray status = contentOf(folder + QStringLiteral("/status"));
    const auto times = contentOf(folder + QStringLiteral("/schedstat")).split(' ');
    return {.id = id,
            .name = QString::fromLocal8Bit(contentOf(folder + QStringLiteral("/comm")).trimmed()),
            .cpu = std::chrono::nanoseconds(times.front().toULongLong()),
            .wakeUps = field(status, "voluntary_ctxt_switches"),
            .preemptions = field(status, "nonvoluntary_ctxt_switches")};
}

} // namespace

Result<ProcessUsage> ProcessUsage::of(pid_t pid)
{
    const QString folder = QStringLiteral("/proc/%1").arg(pid);
    const QByteArray stat = contentOf(folder + QStringLiteral("/stat"));
    if (pid <= 0 || stat.isEmpty()) {
        return failure(QStringLiteral("there is no process %1").arg(pid));
    }
    ProcessUsage usage;
    usage.cpu = tickedCpu(stat);
    const auto status = contentOf(folder + QStringLiteral("/status"));
    usage.residentBytes = field(status, "VmRSS") * 1024;
    const QDir descriptors(folder + QStringLiteral("/fd"));
    usage.descriptors = static_cast<int>(
        descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
    const QDir tasks(folder + QStringLiteral("/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        usage.threads.push_back(threadUsage(tasks.filePath(task), task.toInt()));
    }
    return usage;
}

std::chrono::nanoseconds ProcessUsage::threadCpu() const
{
    std::chrono::nanoseconds sum{};
    for (const auto &thread : threads) {
        sum += thread.cpu;
    }
    return sum;
}

uint64_t ProcessUsage::wakeUps() const
{
    uint64_t sum = 0;
    for (const auto &thread : threads) {
        sum += thread.wakeUps;
    }
    return sum;
}

} // namespace glimmerpane::testing
