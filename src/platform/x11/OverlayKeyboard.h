#pragma once

#include "platform/x11/X11Connection.h"
#include "platform/x11/Xcb.h"

#include "platform/Overlay.h"

#include <cstdint>

namespace snapvane::x11 {

/// Tells what a key press means to a selection: its hardware code, and whether it is a cancel
/// command in the layout in force, as with a key that the user has remapped to Escape. Owned by a
/// session.
class OverlayKeyboard {
public:
    /// Asks for the layout; the answer is read when the first key comes.
    explicit OverlayKeyboard(const Server& server);
    ~OverlayKeyboard();
    OverlayKeyboard(const OverlayKeyboard&) = delete;
    OverlayKeyboard& operator=(const OverlayKeyboard&) = delete;

    /// `keyCode`, `modifiers` (the core mask) and `group` are the server's.
    OverlayKeyEvent translate(std::uint32_t keyCode, std::uint32_t modifiers, std::uint8_t group);

private:
    xcb_keysym_t keySymbol(std::uint32_t keyCode, std::uint8_t group);

    Server m_server;
    std::uint8_t m_firstKeyCode;
    bool m_asked = true;
    xcb_get_keyboard_mapping_cookie_t m_cookie = {};
    Owned<xcb_get_keyboard_mapping_reply_t> m_mapping;
};

} // namespace snapvane::x11
