#include "ClipboardOwner.h"

namespace snapvane::testing {

ClipboardOwner::ClipboardOwner(const QString& display, std::string_view selection)
    : m_connection(display), m_window(xcb_generate_id(m_connection)),
      m_selection(m_connection.atom(selection)) {
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    take();
}

void ClipboardOwner::take() {
    xcb_set_selection_owner(m_connection, m_window, m_selection, XCB_CURRENT_TIME);
    m_connection.sync();
}

bool ClipboardOwner::owns() const {
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr));
    return reply && reply->owner == m_window;
}

} // namespace snapvane::testing
