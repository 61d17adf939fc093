#include "DamageWatch.h"

#include <algorithm>
#include <stdexcept>

namespace snapvane::testing {

DamageWatch::DamageWatch(const QString& display, const std::vector<xcb_window_t>& windows)
    : m_connection(display) {
    const auto* extension = xcb_get_extension_data(m_connection, &xcb_damage_id);
    if (extension == nullptr || extension->present == 0) {
        throw std::runtime_error("the display does not tell what is painted");
    }
    m_event = extension->first_event;
    const Reply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
    for (const xcb_window_t window : windows) {
        xcb_damage_create(m_connection, xcb_generate_id(m_connection), window,
                          XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    }
    // The server begins by reporting all that there is.
    news();
}

DamageWatch::~DamageWatch() = default;

DamageWatch::Painted DamageWatch::news() {
    m_connection.sync();
    Painted painted;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        if ((event->response_type & 0x7f) != m_event + XCB_DAMAGE_NOTIFY) {
            continue;
        }
        const auto& notice = *reinterpret_cast<const xcb_damage_notify_event_t*>(event.get());
        const qint64 pixels = qint64{notice.area.width} * notice.area.height;
        painted.pixels += pixels;
        painted.largestRectangle = std::max(painted.largestRectangle, pixels);
        ++painted.rectangles;
    }
    return painted;
}

} // namespace snapvane::testing
