// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Result.h"
#include "tests/support/XClient.h"

#include <sys/types.h>

namespace glimmerpane::bench
{

/** The resources that a program holds, and the X server for it, at one moment. */
struct Held {
    double memory = 0; ///< resident, KiB
    double descriptors = 0;
    double threads = 0;
    double resources = 0; ///< on the X server
    double pixmapBytes = 0; ///< the same

    /** As text for the user. */
    QString text() const;
};

/** Without what the thread pool has, of which Qt starts a thread for each processor when it likes.
 */
testing::Result<Held> heldBy(const testing::XClient &client, pid_t program);

} // namespace glimmerpane::bench
