// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <map>

namespace glimmerpane::testing
{

/** What the X server keeps for one process, over all of its connections. */
struct ServerResources {
    int connections = 0;
    std::map<QString, uint32_t> counts; ///< by the resource type's name, such as "PIXMAP"
    uint64_t pixmapBytes = 0;

    uint32_t total() const;
};

Result<ServerResources> serverResourcesOf(const XClient &client, pid_t pid);

} // namespace glimmerpane::testing
