#pragma once

#include "platform/x11/X11Connection.h"

#include <utility>

#include <xcb/render.h>

namespace snapvane::x11 {

/// Something in the server under an id of ours, freed with the object. The id is there at once; who
/// makes the object sends the request that creates what it names. Lives at most as long as the
/// connection.
template <auto release> class ServerResource {
public:
    explicit ServerResource(const Server& server)
        : m_connection(server.connection), m_id(xcb_generate_id(server.connection)) {}
    ~ServerResource() {
        if (m_id != XCB_NONE) {
            release(m_connection, m_id);
        }
    }
    ServerResource(ServerResource&& other) noexcept
        : m_connection(other.m_connection), m_id(std::exchange(other.m_id, XCB_NONE)) {}
    ServerResource(const ServerResource&) = delete;
    ServerResource& operator=(const ServerResource&) = delete;
    ServerResource& operator=(ServerResource&&) = delete;

    std::uint32_t id() const { return m_id; }

private:
    xcb_connection_t* m_connection;
    std::uint32_t m_id;
};

using ServerPixmap = ServerResource<&xcb_free_pixmap>;
using ServerPicture = ServerResource<&xcb_render_free_picture>;
using ServerWindow = ServerResource<&xcb_destroy_window>;

} // namespace snapvane::x11
