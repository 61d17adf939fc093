#include "platform/x11/MotionGate.h"

#include <QPointer>

#include <utility>

namespace snapvane::x11 {

namespace {

xcb_atom_t markType(const Server& server) {
    return atom(server, "_SNAPVANE_PAINTED");
}

} // namespace

MotionGate::MotionGate(const Server& server, Deliver deliver)
    : m_server(server), m_deliver(std::move(deliver)) {}

void MotionGate::note(DevicePoint position) {
    m_position = position;
    if (!m_isPainting && !std::exchange(m_scheduled, true)) {
        // After the events that are here already, so that of a burst only the last one counts.
        QMetaObject::invokeMethod(
            &m_context, [this] { deliver(); }, Qt::QueuedConnection);
    }
}

bool MotionGate::handle(const xcb_client_message_event_t& message) {
    if (m_window == XCB_WINDOW_NONE || message.window != m_window ||
        message.type != markType(m_server)) {
        return false;
    }
    m_isPainting = false;
    if (m_position) {
        note(*m_position);
    }
    return true;
}

void MotionGate::deliver() {
    m_scheduled = false;
    const auto position = std::exchange(m_position, std::nullopt);
    if (!position) {
        return;
    }
    m_isPainting = true;
    const QPointer<QObject> self(&m_context);
    const Deliver receiver = m_deliver;
    receiver(*position);
    if (self) {
        // Behind whatever the receiver has scheduled to be painted for this position.
        QMetaObject::invokeMethod(
            &m_context, [this] { sendMark(); }, Qt::QueuedConnection);
    }
}

void MotionGate::sendMark() const {
    if (m_window == XCB_WINDOW_NONE) {
        return;
    }
    xcb_client_message_event_t mark = {};
    mark.response_type = XCB_CLIENT_MESSAGE;
    mark.format = 32;
    mark.window = m_window;
    mark.type = markType(m_server);
    xcb_send_event(m_server.connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&mark));
    xcb_flush(m_server.connection);
}

} // namespace snapvane::x11
