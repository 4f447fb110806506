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
    const auto cookie = xcb_res_query_client_ids(client.connection(), 1, &everybody);
    const Reply<xcb_res_query_client_ids_reply_t> reply(
        xcb_res_query_client_ids_reply(client.connection(), cookie, nullptr));
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

QString atomName(const XClient &client, xcb_atom_t atom)
{
    const auto cookie = xcb_get_atom_name(client.connection(), atom);
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(client.connection(), cookie, nullptr));
    return reply ? QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                                       xcb_get_atom_name_name_length(reply.get()))
                 : QString::number(atom);
}

Result<void> addConnection(const XClient &client, uint32_t connection, ServerResources &sum)
{
    auto *xcb = client.connection();
    const auto countsCookie = xcb_res_query_client_resources(xcb, connection);
    const auto bytesCookie = xcb_res_query_client_pixmap_bytes(xcb, connection);
    const Reply<xcb_res_query_client_resources_reply_t> counts(
        xcb_res_query_client_resources_reply(xcb, countsCookie, nullptr));
    const Reply<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
        xcb_res_query_client_pixmap_bytes_reply(xcb, bytesCookie, nullptr));
    if (!counts || !bytes) {
        return failure(QStringLiteral("the server does not tell a client's resources"));
    }
    const auto *types = xcb_res_query_client_resources_types(counts.get());
    const int length = xcb_res_query_client_resources_types_length(counts.get());
    for (int i = 0; i < length; ++i) {
        sum.counts[atomName(client, types[i].resource_type)] += types[i].count;
    }
    sum.pixmapBytes += (uint64_t{bytes->bytes_overflow} << 32) + bytes->bytes;
    ++sum.connections;
    return {};
}

} // namespace

uint32_t ServerResources::total() const
{
    uint32_t sum = 0;
    for (const auto &[type, count] : counts) {
        sum += count;
    }
    return sum;
}

Result<ServerResources> serverResourcesOf(const XClient &client, pid_t pid)
{
    ServerResources sum;
    for (const auto connection : connectionsOf(client, pid)) {
        if (const auto added = addConnection(client, connection, sum); !added) {
            return failure(added.error());
        }
    }
    if (sum.connections == 0) {
        return failure(QStringLiteral("process %1 has no connection to the display").arg(pid));
    }
    return sum;
}

} // namespace glimmerpane::testing
