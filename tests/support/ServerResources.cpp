#include "ServerResources.h"

#include <vector>
#include <xcb/res.h>

namespace snapvane::testing {

namespace {

/// The base of the resource ids of each connection that the process has.
std::vector<uint32_t> clientsOf(const XcbConnection& connection, pid_t process) {
    // The extension has to be greeted first, with the version that knows process ids.
    const Reply<xcb_res_query_version_reply_t> version(
        xcb_res_query_version_reply(connection, xcb_res_query_version(connection, 1, 2), nullptr));
    const xcb_res_client_id_spec_t everybody = {0, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        connection, xcb_res_query_client_ids(connection, 1, &everybody), nullptr));
    std::vector<uint32_t> clients;
    if (!version || !reply) {
        return clients;
    }
    auto each = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; each.rem > 0; xcb_res_client_id_value_next(&each)) {
        const bool named = xcb_res_client_id_value_value_length(each.data) > 0;
        if (named && *xcb_res_client_id_value_value(each.data) == static_cast<uint32_t>(process)) {
            clients.push_back(each.data->spec.client);
        }
    }
    return clients;
}

QString atomName(const XcbConnection& connection, xcb_atom_t atom) {
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    return reply ? QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                                       xcb_get_atom_name_name_length(reply.get()))
                 : QString::number(atom);
}

} // namespace

ResourceCounts serverResourcesOf(const XcbConnection& connection, pid_t process) {
    ResourceCounts counts;
    for (const uint32_t client : clientsOf(connection, process)) {
        const Reply<xcb_res_query_client_resources_reply_t> reply(
            xcb_res_query_client_resources_reply(
                connection, xcb_res_query_client_resources(connection, client), nullptr));
        if (!reply) {
            continue;
        }
        auto each = xcb_res_query_client_resources_types_iterator(reply.get());
        for (; each.rem > 0; xcb_res_type_next(&each)) {
            counts[atomName(connection, each.data->resource_type)] += each.data->count;
        }
    }
    return counts;
}

} // namespace snapvane::testing
