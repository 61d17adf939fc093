#include "Injector.h"

#include <ranges>
#include <stdexcept>
#include <xcb/xtest.h>

namespace snapvane::testing {

void Injector::moveTo(const QPoint& point) {
    send(XCB_MOTION_NOTIFY, 0, point);
}

void Injector::press(int button) {
    send(XCB_BUTTON_PRESS, static_cast<uint8_t>(button));
}

void Injector::release(int button) {
    send(XCB_BUTTON_RELEASE, static_cast<uint8_t>(button));
}

void Injector::click(const QPoint& point, int button) {
    moveTo(point);
    press(button);
    release(button);
}

void Injector::dragTo(const QPoint& from, const QPoint& to, int steps) {
    moveTo(from);
    press();
    for (int step = 1; step <= steps; ++step) {
        moveTo(from + (to - from) * step / steps);
    }
    // Rounding may leave the last step one pixel short.
    moveTo(to);
}

void Injector::drag(const QPoint& from, const QPoint& to, int steps) {
    dragTo(from, to, steps);
    release();
}

void Injector::tapKey(xcb_keysym_t symbol) {
    const xcb_keycode_t code = keyCodeFor(symbol);
    pressKeyCode(code);
    releaseKeyCode(code);
}

void Injector::pressKeyCode(xcb_keycode_t code) {
    send(XCB_KEY_PRESS, code);
}

void Injector::releaseKeyCode(xcb_keycode_t code) {
    send(XCB_KEY_RELEASE, code);
}

void Injector::pressKeyCodes(const std::vector<xcb_keycode_t>& codes) {
    for (const xcb_keycode_t code : codes) {
        pressKeyCode(code);
    }
}

void Injector::releaseKeyCodes(const std::vector<xcb_keycode_t>& codes) {
    for (const xcb_keycode_t code : std::ranges::reverse_view(codes)) {
        releaseKeyCode(code);
    }
}

xcb_keycode_t Injector::keyCodeFor(xcb_keysym_t symbol) const {
    const xcb_setup_t* setup = xcb_get_setup(m_connection);
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count);
    const Reply<xcb_get_keyboard_mapping_reply_t> reply(
        xcb_get_keyboard_mapping_reply(m_connection, cookie, nullptr));
    if (reply) {
        const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
        for (int index = 0; index < count; ++index) {
            if (symbols[index * reply->keysyms_per_keycode] == symbol) {
                return static_cast<xcb_keycode_t>(setup->min_keycode + index);
            }
        }
    }
    throw std::runtime_error("no key carries the symbol " + std::to_string(symbol));
}

void Injector::send(uint8_t type, uint8_t detail, const QPoint& point) {
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_connection.root(),
                        static_cast<int16_t>(point.x()), static_cast<int16_t>(point.y()), 0);
    m_connection.sync();
}

} // namespace snapvane::testing
