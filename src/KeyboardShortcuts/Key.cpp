#include "KeyboardShortcuts/Key.h"

#include <algorithm>
#include <array>

namespace KeyboardShortcuts {

namespace {

constexpr std::size_t functionKeyCount = 20;

// The function keys come first.
constexpr std::array<Key, functionKeyCount + 11> markedKeys = {Key::f1,          Key::f2,
                                                               Key::f3,          Key::f4,
                                                               Key::f5,          Key::f6,
                                                               Key::f7,          Key::f8,
                                                               Key::f9,          Key::f10,
                                                               Key::f11,         Key::f12,
                                                               Key::f13,         Key::f14,
                                                               Key::f15,         Key::f16,
                                                               Key::f17,         Key::f18,
                                                               Key::f19,         Key::f20,
                                                               Key::help,        Key::deleteForward,
                                                               Key::keypadClear, Key::home,
                                                               Key::end,         Key::pageUp,
                                                               Key::pageDown,    Key::upArrow,
                                                               Key::rightArrow,  Key::downArrow,
                                                               Key::leftArrow};

} // namespace

std::span<const Key> Key::functionKeys() {
    return std::span(markedKeys).first<functionKeyCount>();
}

std::span<const Key> Key::keysWithSynthesizedFunctionModifier() {
    return markedKeys;
}

bool Key::isFunctionKey() const {
    return std::ranges::find(functionKeys(), *this) != functionKeys().end();
}

bool Key::hasSynthesizedFunctionModifier() const {
    return std::ranges::find(markedKeys, *this) != markedKeys.end();
}

} // namespace KeyboardShortcuts
