#include "InputGrabs.h"

#include <stdexcept>

namespace snapvane::testing {

namespace {

bool grabPointer(const XcbConnection& connection) {
    const auto cookie =
        xcb_grab_pointer(connection, 0, connection.root(), 0, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
    const Reply<xcb_grab_pointer_reply_t> reply(
        xcb_grab_pointer_reply(connection, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

bool grabKeyboard(const XcbConnection& connection) {
    const auto cookie = xcb_grab_keyboard(connection, 0, connection.root(), XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(connection, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

} // namespace

bool isPointerGrabbed(const XcbConnection& connection) {
    if (!grabPointer(connection)) {
        return true;
    }
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    connection.sync();
    return false;
}

bool isKeyboardGrabbed(const XcbConnection& connection) {
    if (!grabKeyboard(connection)) {
        return true;
    }
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    connection.sync();
    return false;
}

RudeGrab::RudeGrab(const QString& display, What what) : m_connection(display) {
    const bool held =
        what == What::Pointer ? grabPointer(m_connection) : grabKeyboard(m_connection);
    if (!held) {
        throw std::runtime_error("the test's own grab was refused");
    }
}

} // namespace snapvane::testing
