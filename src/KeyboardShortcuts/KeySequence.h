#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QKeySequence>

namespace KeyboardShortcuts {

/// The shortcut as Qt shows it in menus. Empty where a menu entry has no text for the key, and with
/// the Function modifier, which Qt does not know. Main thread.
QKeySequence keySequence(const Shortcut& shortcut, const snapvane::KeyboardLayout& layout);

} // namespace KeyboardShortcuts
