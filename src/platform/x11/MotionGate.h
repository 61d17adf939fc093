#pragma once

#include "platform/x11/X11Connection.h"

#include "base/Geometry.h"

#include <QObject>

#include <functional>
#include <optional>

namespace snapvane::x11 {

/// Lets pointer motion through no faster than the server works off what is painted for it, the
/// newest position only, so that a slow display is jumped over and not lagged behind. It sends a
/// message to itself behind what was painted; the server passes that on when it has done everything
/// asked for before. Owned by the overlay's session, which hands it the events; main thread.
class MotionGate {
public:
    /// Receives a position in the server's space. May destroy the gate.
    using Deliver = std::function<void(DevicePoint)>;

    MotionGate(const Server& server, Deliver deliver);

    /// Names a window of ours for the messages to come to; before that none are sent.
    void setWindow(xcb_window_t window) { m_window = window; }
    /// Notes where the pointer is; it is delivered later.
    void note(DevicePoint position);
    /// Leaves out what was noted and is not delivered yet.
    void forget() { m_position.reset(); }
    /// True for a message of the gate itself.
    bool handle(const xcb_client_message_event_t& message);

private:
    void deliver();
    void sendMark() const;

    Server m_server;
    Deliver m_deliver;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::optional<DevicePoint> m_position;
    bool m_scheduled = false;
    // A message is on its way to the server and back, behind what was painted for the last
    // position.
    bool m_isPainting = false;
    // What is scheduled goes with it.
    QObject m_context;
};

} // namespace snapvane::x11
