#include "XcbConnection.h"

#include <stdexcept>

namespace snapvane::testing {

XcbConnection::XcbConnection(const QString& display)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr)) {
    if (xcb_connection_has_error(m_connection) != 0) {
        xcb_disconnect(m_connection);
        throw std::runtime_error("cannot reach display " + display.toStdString());
    }
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
}

XcbConnection::~XcbConnection() {
    xcb_disconnect(m_connection);
}

QRect XcbConnection::rootRect() const {
    return {0, 0, m_screen->width_in_pixels, m_screen->height_in_pixels};
}

xcb_atom_t XcbConnection::atom(std::string_view name) const {
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void XcbConnection::sync() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

} // namespace snapvane::testing
