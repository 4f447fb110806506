// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Result.h"

#include <chrono>
#include <sys/types.h>
#include <vector>

namespace glimmerpane::testing
{

struct ThreadUsage {
    pid_t id = 0;
    QString name; ///< as the kernel knows it, at most 15 characters
    std::chrono::nanoseconds cpu{};
    uint64_t wakeUps = 0; ///< voluntary context switches: it slept and was woken
    uint64_t preemptions = 0; ///< involuntary context switches
};

/** What a process has used since its start. Threads that have ended are in `cpu` only. */
struct ProcessUsage {
    std::chrono::nanoseconds cpu{}; ///< user and system, all threads, in clock ticks of 10 ms
    std::vector<ThreadUsage> threads;
    int descriptors = 0;
    uint64_t residentBytes = 0;

    static Result<ProcessUsage> of(pid_t pid);

    /** Sum of the living threads, in nanoseconds. */
    std::chrono::nanoseconds threadCpu() const;
    uint64_t wakeUps() const;
};

} // namespace glimmerpane::testing
