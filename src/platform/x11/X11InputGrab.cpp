#include "platform/x11/X11InputGrab.h"

#include "platform/x11/Xcb.h"

#include <chrono>

namespace snapvane::x11 {

namespace {

constexpr auto retryInterval = std::chrono::milliseconds(20);
constexpr auto patience = std::chrono::milliseconds(1000);

constexpr std::uint32_t pointerEvents = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS |
                                        XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
                                        XCB_INPUT_XI_EVENT_MASK_MOTION;
constexpr std::uint32_t keyboardEvents =
    XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;

/// The keyboard that the pointer's device is paired with; 0 when there is none.
xcb_input_device_id_t pairedKeyboard(const Server& server, xcb_input_device_id_t pointer) {
    const auto cookie = xcb_input_xi_query_device(server.connection, pointer);
    const auto reply = owned(xcb_input_xi_query_device_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return 0;
    }
    const auto devices = xcb_input_xi_query_device_infos_iterator(reply.get());
    return devices.rem > 0 ? devices.data->attachment : xcb_input_device_id_t{0};
}

xcb_input_device_id_t clientPointer(const Server& server) {
    const auto cookie = xcb_input_xi_get_client_pointer(server.connection, XCB_WINDOW_NONE);
    const auto reply =
        owned(xcb_input_xi_get_client_pointer_reply(server.connection, cookie, nullptr));
    return reply ? reply->deviceid : xcb_input_device_id_t{0};
}

xcb_window_t createInputWindow(const Server& server) {
    const xcb_window_t window = xcb_generate_id(server.connection);
    const std::uint32_t overrideRedirect = 1;
    // Viewable, as a grab demands, but off the desktop.
    xcb_create_window(server.connection, 0, window, server.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    setWindowIdentity(server, window, "Snapvane Input");
    xcb_map_window(server.connection, window);
    return window;
}

} // namespace

X11InputGrab::X11InputGrab(const Server& server, xcb_cursor_t cursor,
                           std::function<void(const QString& reason)> refused)
    : m_server(server), m_cursor(cursor), m_refused(std::move(refused)),
      m_attemptsLeft(static_cast<int>(patience / retryInterval)) {
    m_window = createInputWindow(m_server);
    m_pointer = clientPointer(m_server);
    m_keyboard = pairedKeyboard(m_server, m_pointer);
    QObject::connect(&m_retry, &QTimer::timeout, &m_retry, [this] { attempt(); });
    m_retry.start(retryInterval);
    attempt();
}

X11InputGrab::~X11InputGrab() {
    release();
    xcb_destroy_window(m_server.connection, m_window);
}

void X11InputGrab::attempt() {
    std::uint8_t pointerStatus = XCB_GRAB_STATUS_SUCCESS;
    std::uint8_t keyboardStatus = XCB_GRAB_STATUS_SUCCESS;
    m_pointerHeld = m_pointerHeld || grabDevice(m_pointer, pointerEvents, &pointerStatus);
    m_keyboardHeld = m_keyboardHeld || grabDevice(m_keyboard, keyboardEvents, &keyboardStatus);
    if (m_pointerHeld && m_keyboardHeld) {
        m_retry.stop();
        return;
    }
    if (--m_attemptsLeft > 0) {
        return;
    }
    m_retry.stop();
    release();
    const QString reason = QStringLiteral("pointer status %1, keyboard status %2")
                               .arg(pointerStatus)
                               .arg(keyboardStatus);
    // The receiver may end the session, and this object with it; from the timer's own turn that
    // would pull it from under its caller.
    QMetaObject::invokeMethod(
        &m_retry, [refused = m_refused, reason] { refused(reason); }, Qt::QueuedConnection);
}

bool X11InputGrab::grabDevice(xcb_input_device_id_t device, std::uint32_t mask,
                              std::uint8_t* status) {
    const auto cookie =
        xcb_input_xi_grab_device(m_server.connection, m_window, XCB_CURRENT_TIME, m_cursor, device,
                                 XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                 XCB_INPUT_GRAB_OWNER_NO_OWNER, 1, &mask);
    const auto reply = owned(xcb_input_xi_grab_device_reply(m_server.connection, cookie, nullptr));
    *status = reply ? reply->status : std::uint8_t{XCB_GRAB_STATUS_NOT_VIEWABLE};
    return *status == XCB_GRAB_STATUS_SUCCESS;
}

void X11InputGrab::release() {
    if (m_pointerHeld) {
        xcb_input_xi_ungrab_device(m_server.connection, XCB_CURRENT_TIME, m_pointer);
    }
    if (m_keyboardHeld) {
        xcb_input_xi_ungrab_device(m_server.connection, XCB_CURRENT_TIME, m_keyboard);
    }
    m_pointerHeld = false;
    m_keyboardHeld = false;
    xcb_flush(m_server.connection);
}

} // namespace snapvane::x11
