#include "NoticeBystander.h"

#include "Wait.h"

#include <array>
#include <utility>

namespace snapvane::testing {

NoticeBystander::NoticeBystander(const QString& display, Kind kind, const QRect& rect)
    : m_connection(display), m_window(xcb_generate_id(m_connection)) {
    const std::array<uint32_t, 3> values = {colour, kind == Kind::OverrideRedirect ? 1U : 0U,
                                            XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_connection.root(),
                      static_cast<int16_t>(rect.x()), static_cast<int16_t>(rect.y()),
                      static_cast<uint16_t>(rect.width()), static_cast<uint16_t>(rect.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values.data());
    describe(kind, rect);
    xcb_map_window(m_connection, m_window);
    require("a bystander", [this] {
        const Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, m_window), nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    });
}

std::vector<xcb_keycode_t> NoticeBystander::takeKeys() {
    collect();
    return std::exchange(m_keys, {});
}

int NoticeBystander::takeClicks() {
    collect();
    return std::exchange(m_clicks, 0);
}

void NoticeBystander::describe(Kind kind, const QRect& rect) {
    if (kind == Kind::FullScreen) {
        setAtom("_NET_WM_STATE", "_NET_WM_STATE_FULLSCREEN");
    } else if (kind == Kind::Dock) {
        setAtom("_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK");
        // Left, right, top and bottom; then where each begins and ends.
        std::array<uint32_t, 12> strut = {};
        strut[2] = static_cast<uint32_t>(rect.height());
        strut[8] = static_cast<uint32_t>(rect.left());
        strut[9] = static_cast<uint32_t>(rect.right());
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window,
                            m_connection.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32,
                            strut.size(), strut.data());
    }
}

void NoticeBystander::setAtom(const char* property, const char* value) {
    const xcb_atom_t atom = m_connection.atom(value);
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, m_connection.atom(property),
                        XCB_ATOM_ATOM, 32, 1, &atom);
}

void NoticeBystander::collect() {
    m_connection.sync();
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        const auto type = event->response_type & 0x7f;
        if (type == XCB_KEY_PRESS) {
            m_keys.push_back(reinterpret_cast<const xcb_key_press_event_t&>(*event).detail);
        } else if (type == XCB_BUTTON_PRESS) {
            ++m_clicks;
        }
    }
}

} // namespace snapvane::testing
