#pragma once

#include "KeyboardShortcuts/Key.h"

#include <QString>

#include <optional>
#include <unordered_map>

namespace KeyboardShortcuts {

/// The keys that are shown by a sign or a name of their own instead of the character they type.
enum class SpecialKey {
    return_,
    delete_,
    deleteForward,
    end,
    escape,
    help,
    home,
    space,
    tab,
    pageUp,
    pageDown,
    upArrow,
    rightArrow,
    downArrow,
    leftArrow,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    f13,
    f14,
    f15,
    f16,
    f17,
    f18,
    f19,
    f20,
    keypad0,
    keypad1,
    keypad2,
    keypad3,
    keypad4,
    keypad5,
    keypad6,
    keypad7,
    keypad8,
    keypad9,
    keypadClear,
    keypadDecimal,
    keypadDivide,
    keypadEnter,
    keypadEquals,
    keypadMinus,
    keypadMultiply,
    keypadPlus
};

/// From key code to special key. Built on first use.
const std::unordered_map<std::int64_t, SpecialKey>& keyToSpecialKeyMapping();

Key keyOf(SpecialKey key);

/// What a user reads for the key.
QString presentableDescription(SpecialKey key);

/// The text that stands for the key in a menu entry's key equivalent; nothing for keypad keys.
std::optional<QString> appKitMenuItemKeyEquivalent(SpecialKey key);

/// The character by which declarative user interfaces name the key; nothing for keypad keys.
std::optional<QString> swiftUIKeyEquivalent(SpecialKey key);

/// Qt's name for the key, for key sequences; nothing for keypad keys.
std::optional<Qt::Key> qtKey(SpecialKey key);

} // namespace KeyboardShortcuts
