#pragma once

#include "platform/x11/X11Connection.h"

#include <QTimer>

#include <functional>

#include <xcb/xinput.h>

namespace snapvane::x11 {

/// Holds the pointer and the keyboard for a session, without moving the input focus. Another
/// program may hold one of them for a moment (the menu that the capture was chosen from does), so
/// it tries for a second. The grab belongs to a window of its own that nobody sees, so that it
/// survives surfaces that come and go. Owned by the session; main thread, Qt's connection.
class X11InputGrab {
public:
    /// Starts trying; `refused` is called, once, when the second is over. The connection has to
    /// have agreed on XInput 2, which Qt does.
    X11InputGrab(const Server& server, xcb_cursor_t cursor,
                 std::function<void(const QString& reason)> refused);
    ~X11InputGrab();
    X11InputGrab(const X11InputGrab&) = delete;
    X11InputGrab& operator=(const X11InputGrab&) = delete;

    /// The window that events arrive at while the grab holds.
    xcb_window_t window() const { return m_window; }

private:
    void attempt();
    bool grabDevice(xcb_input_device_id_t device, std::uint32_t mask, std::uint8_t* status);
    void release();

    Server m_server;
    xcb_cursor_t m_cursor;
    std::function<void(const QString&)> m_refused;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_input_device_id_t m_pointer = 0;
    xcb_input_device_id_t m_keyboard = 0;
    bool m_pointerHeld = false;
    bool m_keyboardHeld = false;
    int m_attemptsLeft;
    QTimer m_retry;
};

} // namespace snapvane::x11
