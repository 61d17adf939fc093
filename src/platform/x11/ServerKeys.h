#pragma once

#include "platform/KeyCodes.h"

#include <cstdint>

namespace snapvane::x11 {

/// The server's code of the first key of the kernel; from there both count alike. Source: the evdev
/// key codes in the data of the keyboard extension.
inline constexpr int firstServerKey = 8;

inline int serverKeyOfEvdev(int evdevCode) {
    return evdevCode + firstServerKey;
}

/// The Carbon code of a key of the server's; nothing when it has none.
inline std::optional<int> carbonOfServerKey(std::uint32_t serverKey) {
    return KeyCodes::carbonOfEvdev(static_cast<int>(serverKey) - firstServerKey);
}

} // namespace snapvane::x11
