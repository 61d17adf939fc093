#include "platform/x11/HotKeyGrab.h"

#include "platform/x11/Xcb.h"

namespace snapvane::x11 {

std::unique_ptr<HotKeyGrab> HotKeyGrab::take(const Server& server,
                                             const KeyCombination& combination,
                                             const std::vector<std::uint16_t>& lockCombinations) {
    std::vector<Part> parts;
    for (const std::uint8_t keyCode : combination.keyCodes) {
        for (const std::uint16_t locks : lockCombinations) {
            parts.push_back({keyCode, static_cast<std::uint16_t>(combination.modifiers | locks)});
        }
    }
    // All are asked for before any answer is waited for: one round trip.
    std::vector<xcb_void_cookie_t> cookies;
    for (const Part& part : parts) {
        // To the root window, even where the combination is pressed in a window of ours, so that
        // it arrives in one way only.
        constexpr std::uint8_t ownerEvents = 0;
        cookies.push_back(xcb_grab_key_checked(server.connection, ownerEvents, server.root(),
                                               part.modifiers, part.keyCode, XCB_GRAB_MODE_ASYNC,
                                               XCB_GRAB_MODE_ASYNC));
    }
    std::vector<Part> taken;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (!owned(xcb_request_check(server.connection, cookies[index]))) {
            taken.push_back(parts[index]);
        }
    }
    const bool complete = taken.size() == parts.size() && !parts.empty();
    std::unique_ptr<HotKeyGrab> grab(new HotKeyGrab(server, std::move(taken)));
    return complete ? std::move(grab) : nullptr;
}

HotKeyGrab::~HotKeyGrab() {
    for (const Part& part : m_parts) {
        xcb_ungrab_key(m_server.connection, part.keyCode, m_server.root(), part.modifiers);
    }
    xcb_flush(m_server.connection);
}

} // namespace snapvane::x11
