#include "platform/x11/OverlayKeyboard.h"

#include "platform/x11/ServerKeys.h"

namespace snapvane::x11 {

namespace {

// Key symbols, from X11/keysymdef.h.
constexpr xcb_keysym_t escapeSymbol = 0xff1b;
constexpr xcb_keysym_t cancelSymbol = 0xff69;
constexpr xcb_keysym_t periodSymbol = 0x002e;

// Symbols come in pairs (plain, shifted), one pair a layout group.
constexpr int symbolsPerGroup = 2;

} // namespace

OverlayKeyboard::OverlayKeyboard(const Server& server) : m_server(server) {
    const xcb_setup_t* setup = xcb_get_setup(server.connection);
    m_firstKeyCode = setup->min_keycode;
    m_cookie = xcb_get_keyboard_mapping(
        server.connection, setup->min_keycode,
        static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
}

OverlayKeyboard::~OverlayKeyboard() {
    if (m_asked) {
        xcb_discard_reply(m_server.connection, m_cookie.sequence);
    }
}

OverlayKeyEvent OverlayKeyboard::translate(std::uint32_t keyCode, std::uint32_t modifiers,
                                           std::uint8_t group) {
    OverlayKeyEvent event;
    event.keyCode = carbonOfServerKey(keyCode).value_or(-1);
    const xcb_keysym_t symbol = keySymbol(keyCode, group);
    const bool superHeld = (modifiers & XCB_MOD_MASK_4) != 0;
    event.isCancelCommand =
        symbol == escapeSymbol || symbol == cancelSymbol || (symbol == periodSymbol && superHeld);
    return event;
}

xcb_keysym_t OverlayKeyboard::keySymbol(std::uint32_t keyCode, std::uint8_t group) {
    if (m_asked) {
        m_mapping = owned(xcb_get_keyboard_mapping_reply(m_server.connection, m_cookie, nullptr));
        m_asked = false;
    }
    if (!m_mapping || keyCode < m_firstKeyCode) {
        return XCB_NO_SYMBOL;
    }
    const int width = m_mapping->keysyms_per_keycode;
    const int column = group * symbolsPerGroup < width ? group * symbolsPerGroup : 0;
    const int index = static_cast<int>(keyCode - m_firstKeyCode) * width + column;
    if (width == 0 || index >= xcb_get_keyboard_mapping_keysyms_length(m_mapping.get())) {
        return XCB_NO_SYMBOL;
    }
    return xcb_get_keyboard_mapping_keysyms(m_mapping.get())[index];
}

} // namespace snapvane::x11
