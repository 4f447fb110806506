// SPDX-License-Identifier: MIT
#include "rig/ServerResources.h"

#include <set>
#include <xcb/res.h>

namespace glimmerpane::testing
{

namespace
{

/** The resource base of each connection that the process holds. */
std::set<uint32_t> connectionsOf(const XClient &client, pid_t pid)
{
    const xcb_res_client_id_spec_t everybody{.client = XCB_NONE,
                                             .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply
        = ask<xcb_res_query_client_ids, xcb_res_query_client_ids_reply>(client, 1U, &everybody);
    std::set<uint32_t> connections;
    if (!reply) {
        return connections;
    }
    auto iterator = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; iterator.rem > 0; xcb_res_client_id_value_next(&iterator)) {
        if (iterator.data->length >= 4
            && xcb_res_client_id_value_value(iterator.data)[0] == static_cast<uint32_t>(pid)) {
            connections.insert(iterator.data->spec.client);
        }
    }
    return connections;
}

} // namespace

Result<ServerResources> ServerResources::of(const XClient &client, pid_t pid)
{
    ServerResources sum;
    for (const auto connection : connectionsOf(client, pid)) {
        const auto counts
            = ask<xcb_res_query_client_resources, xcb_res_query_client_resources_reply>(client,
                                                                                        connection);
        const auto bytes
            = ask<xcb_res_query_client_pixmap_bytes, xcb_res_query_client_pixmap_bytes_reply>(
                client, connection);
        if (!counts || !bytes) {
            return failure(QStringLiteral("the server does not tell a client's resources"));
        }
        const auto *types = xcb_res_query_client_resources_types(counts.get());
        for (int i = 0; i < xcb_res_query_client_resources_types_length(counts.get()); ++i) {
            sum.count += types[i].count;
        }
        sum.pixmapBytes += (uint64_t{bytes->bytes_overflow} << 32) + bytes->bytes;
    }
    if (sum.count == 0) {
        return failure(QStringLiteral("process %1 has nothing on the display").arg(pid));
    }
    return sum;
}

} // namespace glimmerpane::testing
