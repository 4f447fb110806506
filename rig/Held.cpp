// SPDX-License-Identifier: MIT
#include "rig/Held.h"

#include "rig/ProcessUsage.h"
#include "rig/ServerResources.h"
#include "rig/WaitFor.h"

#include <algorithm>

namespace glimmerpane::testing
{

Result<Held> heldBy(const XClient &client, pid_t program)
{
    constexpr std::chrono::seconds limit{10};
    // The server returns an error for a connection that closes between two requests.
    Result<ServerResources> onServer;
    waitFor([&] { return (onServer = ServerResources::of(client, program)).has_value(); }, limit);
    const auto usage = ProcessUsage::of(program);
    if (!usage || !onServer) {
        return failure(usage ? onServer.error() : usage.error());
    }
    // Each of them has a descriptor, too.
    const auto pooled = static_cast<double>(
        std::ranges::count(usage->threads, QStringLiteral("Thread (pooled)"), &ThreadUsage::name));
    return Held{.memory = static_cast<double>(usage->residentBytes) / 1024,
                .descriptors = usage->descriptors - pooled,
                .threads = static_cast<double>(usage->threads.size()) - pooled,
                .resources = static_cast<double>(onServer->count),
                .pixmapBytes = static_cast<double>(onServer->pixmapBytes)};
}

QString Held::text() const
{
    return QStringLiteral("%1 KiB, %2 descriptors, %3 threads, %4 resources, %5 bytes of pixmaps")
        .arg(memory, 0, 'f', 0)
        .arg(descriptors)
        .arg(threads)
        .arg(resources)
        .arg(pixmapBytes, 0, 'f', 0);
}

} // namespace glimmerpane::testing
