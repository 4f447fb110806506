// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Result.h"

#include <sys/types.h>
#include <vector>

namespace glimmerpane::testing
{

struct ThreadUsage {
    pid_t id = 0;
    QString name; ///< the kernel's name for it, at most 15 characters
    double cpu = 0; ///< milliseconds
    double wakeUps = 0; ///< voluntary context switches
};

/** What the running threads of a process have used since they started. */
struct ProcessUsage {
    std::vector<ThreadUsage> threads;
    int descriptors = 0;
    uint64_t residentBytes = 0;

    static Result<ProcessUsage> of(pid_t pid);

    /** The sum over the threads. */
    double cpu() const;
    double wakeUps() const;
};

} // namespace glimmerpane::testing
