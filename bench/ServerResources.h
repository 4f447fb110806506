// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

#include <map>

namespace glimmerpane::bench
{

using testing::Result;
using testing::XClient;

/** The X server's resources for one process, over all of its connections. */
struct ServerResources {
    int connections = 0;
    std::map<QString, uint32_t> counts; ///< by the resource type's name, such as "PIXMAP"
    uint64_t pixmapBytes = 0;

    uint32_t total() const;
};

Result<ServerResources> serverResourcesOf(const XClient &client, pid_t pid);

} // namespace glimmerpane::bench
