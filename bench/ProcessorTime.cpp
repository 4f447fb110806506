// SPDX-License-Identifier: MIT
#include "bench/ProcessorTime.h"

#include "bench/NumberedAnimation.h"
#include "rig/ProcessUsage.h"

namespace glimmerpane::bench
{

namespace
{

double milliseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

} // namespace

Result<Spent> spend(Desktop &desktop, pid_t program, QPoint corner, std::chrono::milliseconds time)
{
    const auto usageOf
        = [](pid_t pid) { return pid == 0 ? Result<ProcessUsage>() : ProcessUsage::of(pid); };
    const auto firstFrame = sourceNumber(desktop, corner);
    const auto begin = std::chrono::steady_clock::now();
    const auto server = ProcessUsage::of(desktop.server().pid());
    const auto before = usageOf(program);
    if (!desktop.rest(time)) {
        return failure(QStringLiteral("stopped"));
    }
    const auto serverAfter = ProcessUsage::of(desktop.server().pid());
    const auto after = usageOf(program);
    const auto end = std::chrono::steady_clock::now();
    const auto lastFrame = sourceNumber(desktop, corner);
    if (!server || !serverAfter || !before || !after || !firstFrame || !lastFrame) {
        return failure(QStringLiteral("a process or the animation ended while it was measured"));
    }
    return Spent{.seconds = std::chrono::duration<double>(end - begin).count(),
                 .server = milliseconds(serverAfter->threadCpu() - server->threadCpu()),
                 .program = milliseconds(after->threadCpu() - before->threadCpu()),
                 .wakeUps = after->wakeUps() - before->wakeUps(),
                 .sourceFrames = *lastFrame - *firstFrame};
}

double serverBeyond(const Spent &spent, const Spent &aloneBefore, const Spent &aloneAfter)
{
    return spent.server
        - (aloneBefore.server + aloneAfter.server)
        / (aloneBefore.sourceFrames + aloneAfter.sourceFrames) * spent.sourceFrames;
}

} // namespace glimmerpane::bench
