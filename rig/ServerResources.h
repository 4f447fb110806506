// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

namespace glimmerpane::testing
{

/** What the X server keeps for one process, on all of its connections. */
struct ServerResources {
    uint32_t count = 0; ///< of windows, pixmaps and everything else with an id
    uint64_t pixmapBytes = 0;

    static Result<ServerResources> of(const XClient &client, pid_t pid);
};

} // namespace glimmerpane::testing
