// SPDX-License-Identifier: MIT
#include "bench/Held.h"

#include "bench/ProcessUsage.h"
#include "bench/ServerResources.h"
#include "tests/support/WaitFor.h"

#include <algorithm>

namespace glimmerpane::bench
{

testing::Result<Held> heldBy(const testing::XClient &client, pid_t program)
{
    constexpr std::chrono::seconds limit{10};
    // The server returns an error for a connection that closes between two requests.
    Result<ServerResources> onServer;
    testing::waitFor(
        [&] {
            onServer = serverResourcesOf(client, program);
            return onServer.has_value();
        },
        limit);
    const auto usage = ProcessUsage::of(program);
    if (!usage || !onServer) {
        return testing::failure(usage ? onServer.error() : usage.error());
    }
    // Each of them has a descriptor, too.
    const auto pooled = static_cast<double>(
        std::ranges::count(usage->threads, QStringLiteral("Thread (pooled)"), &ThreadUsage::name));
    return Held{.memory = static_cast<double>(usage->residentBytes) / 1024,
                .descriptors = usage->descriptors - pooled,
                .threads = static_cast<double>(usage->threads.size()) - pooled,
                .resources = static_cast<double>(onServer->total()),
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

} // namespace glimmerpane::bench
