#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "support/QtPrinting.h"

#include <ostream>

namespace KeyboardShortcuts {

// How GoogleTest shows the module's values in a failure.

inline void PrintTo(const Shortcut& shortcut, std::ostream* stream) {
    *stream << "key " << shortcut.carbonKeyCode() << " modifiers 0x" << std::hex
            << shortcut.carbonModifiers() << std::dec;
}

inline void PrintTo(ModifierFlags flags, std::ostream* stream) {
    *stream << "flags 0x" << std::hex << flags.rawValue() << std::dec;
}

} // namespace KeyboardShortcuts
