// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Result.h"
#include "rig/XClient.h"

#include <sys/types.h>

namespace glimmerpane::testing
{

/** The resources that a program, and the X server on its behalf, hold at one moment. */
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
Result<Held> heldBy(const XClient &client, pid_t program);

} // namespace glimmerpane::testing
