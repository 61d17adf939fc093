#pragma once

#include "platform/HotKeys.h"
#include "platform/KeyCodes.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace snapvane::testing {

/// The key that types the symbol without modifiers on a keyboard of the US kind.
inline std::optional<int> usKeyOfSymbol(std::uint32_t symbol) {
    struct Row {
        int evdev;
        std::string_view symbols;
    };
    static constexpr Row rows[] = {
        {2, "1234567890-="}, {16, "qwertyuiop[]"}, {30, "asdfghjkl;'`"}, {43, "\\zxcvbnm,./"}};
    static constexpr std::pair<std::uint32_t, int> named[] = {
        {XKB_KEY_space, 57},
        {XKB_KEY_Tab, 15},
        {XKB_KEY_Return, 28},
        {XKB_KEY_BackSpace, 14},
        {XKB_KEY_Escape, 1},
        {XKB_KEY_Delete, 111},
        {XKB_KEY_Insert, 110},
        {XKB_KEY_Help, 138},
        {XKB_KEY_Menu, 127},
        {XKB_KEY_Home, 102},
        {XKB_KEY_End, 107},
        {XKB_KEY_Page_Up, 104},
        {XKB_KEY_Page_Down, 109},
        {XKB_KEY_Up, 103},
        {XKB_KEY_Right, 106},
        {XKB_KEY_Down, 108},
        {XKB_KEY_Left, 105},
        {XKB_KEY_Print, 99},
        {XKB_KEY_Scroll_Lock, 70},
        {XKB_KEY_Pause, 119},
        {XKB_KEY_F1, 59},
        {XKB_KEY_F2, 60},
        {XKB_KEY_F4, 62},
        {XKB_KEY_F5, 63},
        {XKB_KEY_F6, 64},
        {XKB_KEY_F12, 88},
        {XKB_KEY_F20, 190},
        {XKB_KEY_KP_0, 82},
        {XKB_KEY_KP_5, 76},
        {XKB_KEY_KP_9, 73},
        {XKB_KEY_KP_Add, 78},
        {XKB_KEY_KP_Subtract, 74},
        {XKB_KEY_KP_Multiply, 55},
        {XKB_KEY_KP_Divide, 98},
        {XKB_KEY_KP_Decimal, 83},
        {XKB_KEY_KP_Separator, 95},
        {XKB_KEY_KP_Equal, 117},
        {XKB_KEY_KP_Enter, 96},
        {XKB_KEY_XF86AudioMute, 113},
        {XKB_KEY_XF86AudioLowerVolume, 114},
        {XKB_KEY_XF86AudioRaiseVolume, 115},
    };
    for (const Row& row : rows) {
        const auto place = row.symbols.find(static_cast<char>(symbol));
        if (symbol < 0x80 && place != std::string_view::npos) {
            return KeyCodes::carbonOfEvdev(row.evdev + static_cast<int>(place));
        }
    }
    for (const auto& [namedSymbol, evdev] : named) {
        if (namedSymbol == symbol) {
            return KeyCodes::carbonOfEvdev(evdev);
        }
    }
    return std::nullopt;
}

/// A key code and modifiers, which can be compared.
using Combination = std::pair<std::int64_t, std::int64_t>;

/// Of shortcuts that are whole and in force, as all of them should be; others stand out.
inline Combination combination(const SymbolicHotKey& shortcut) {
    return shortcut.isEnabled
               ? Combination(shortcut.keyCode.value_or(-1), shortcut.modifiers.value_or(-1))
               : Combination(-1, -1);
}

inline std::vector<Combination> combinations(const std::vector<SymbolicHotKey>& shortcuts) {
    std::vector<Combination> result;
    result.reserve(shortcuts.size());
    for (const SymbolicHotKey& shortcut : shortcuts) {
        result.push_back(combination(shortcut));
    }
    return result;
}

} // namespace snapvane::testing
