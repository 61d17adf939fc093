#pragma once

#include "KeyboardShortcuts/ModifierFlags.h"

#include <QString>

#include <vector>

namespace KeyboardShortcuts {

struct MenuItem;

using Menu = std::vector<MenuItem>;

/// A menu entry as far as shortcuts are concerned.
struct MenuItem {
    QString title;
    /// What the key types, or its sign; an upper-case letter means that Shift goes with it. Empty
    /// for none.
    QString keyEquivalent;
    ModifierFlags keyEquivalentModifierMask = ModifierFlags::command;
    Menu submenu = {};
};

} // namespace KeyboardShortcuts
