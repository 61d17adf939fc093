#include "PaintedWindow.h"

#include "Wait.h"

#include <array>

namespace snapvane::testing {

PaintedWindow::PaintedWindow(const QString& display, const QRect& rect, uint32_t colour)
    : m_connection(display), m_window(xcb_generate_id(m_connection)), m_size(rect.size()) {
    const std::array<uint32_t, 3> values = {XCB_BACK_PIXMAP_NONE, 1U, XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_connection.root(),
                      static_cast<int16_t>(rect.x()), static_cast<int16_t>(rect.y()),
                      static_cast<uint16_t>(rect.width()), static_cast<uint16_t>(rect.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values.data());
    xcb_map_window(m_connection, m_window);
    require("a painted window to be exposed", [this] { return takeExposures() > 0; });
    paint(colour);
}

void PaintedWindow::paint(uint32_t colour) {
    const xcb_gcontext_t context = xcb_generate_id(m_connection);
    xcb_create_gc(m_connection, context, m_window, XCB_GC_FOREGROUND, &colour);
    const xcb_rectangle_t whole = {0, 0, static_cast<uint16_t>(m_size.width()),
                                   static_cast<uint16_t>(m_size.height())};
    xcb_poly_fill_rectangle(m_connection, m_window, context, 1, &whole);
    xcb_free_gc(m_connection, context);
    m_connection.sync();
}

int PaintedWindow::takeExposures() {
    m_connection.sync();
    int count = 0;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        count += (event->response_type & 0x7f) == XCB_EXPOSE ? 1 : 0;
    }
    return count;
}

} // namespace snapvane::testing
