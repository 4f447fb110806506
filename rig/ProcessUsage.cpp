// SPDX-License-Identifier: MIT
#include "rig/ProcessUsage.h"

#include <QDir>
#include <QFile>

#include <numeric>

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

ThreadUsage threadUsage(const QString &folder, pid_t id)
{
    const QByteArray status = contentOf(folder + QStringLiteral("/status"));
    const auto times = contentOf(folder + QStringLiteral("/schedstat")).split(' '); // nanoseconds
    return {.id = id,
            .name = QString::fromLocal8Bit(contentOf(folder + QStringLiteral("/comm")).trimmed()),
            .cpu = times.front().toDouble() / 1e6,
            .wakeUps = static_cast<double>(field(status, "voluntary_ctxt_switches"))};
}

} // namespace

Result<ProcessUsage> ProcessUsage::of(pid_t pid)
{
    const QDir folder(QStringLiteral("/proc/%1").arg(pid));
    const auto status = contentOf(folder.filePath(QStringLiteral("status")));
    if (pid <= 0 || status.isEmpty()) {
        return failure(QStringLiteral("there is no process %1").arg(pid));
    }
    ProcessUsage usage;
    usage.residentBytes = field(status, "VmRSS") * 1024;
    const QDir descriptors(folder.filePath(QStringLiteral("fd")));
    usage.descriptors = static_cast<int>(
        descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
    const QDir tasks(folder.filePath(QStringLiteral("task")));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        usage.threads.push_back(threadUsage(tasks.filePath(task), task.toInt()));
    }
    return usage;
}

double ProcessUsage::cpu() const
{
    return std::accumulate(threads.begin(), threads.end(), 0.0,
                           [](double sum, const auto &thread) { return sum + thread.cpu; });
}

double ProcessUsage::wakeUps() const
{
    return std::accumulate(threads.begin(), threads.end(), 0.0,
                           [](double sum, const auto &thread) { return sum + thread.wakeUps; });
}

} // namespace glimmerpane::testing
