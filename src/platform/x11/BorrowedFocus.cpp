#include "platform/x11/BorrowedFocus.h"

#include "platform/x11/Xcb.h"

namespace snapvane::x11 {

BorrowedFocus::BorrowedFocus(const Server& server, xcb_window_t window)
    : m_server(server), m_window(window) {}

BorrowedFocus::~BorrowedFocus() {
    if (m_lender != XCB_NONE && isHeld()) {
        give(m_lender);
    }
}

void BorrowedFocus::take() {
    const xcb_window_t holder = focused();
    if (holder != m_window) {
        m_lender = holder;
        give(m_window);
    }
}

bool BorrowedFocus::isHeld() const {
    return focused() == m_window;
}

xcb_window_t BorrowedFocus::focused() const {
    const auto reply = owned(xcb_get_input_focus_reply(
        m_server.connection, xcb_get_input_focus(m_server.connection), nullptr));
    return reply ? reply->focus : XCB_NONE;
}

void BorrowedFocus::give(xcb_window_t window) const {
    // A window that cannot have it, because it has gone in the meantime, is no error of ours. Keys
    // then go to the window under the pointer, as they do when a focused window goes.
    const auto cookie = xcb_set_input_focus_checked(
        m_server.connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_discard_reply(m_server.connection, cookie.sequence);
    xcb_flush(m_server.connection);
}

} // namespace snapvane::x11
