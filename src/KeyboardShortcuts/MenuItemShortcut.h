#pragma once

#include "KeyboardShortcuts/Name.h"

class QAction;

namespace snapvane {
class KeyboardLayout;
} // namespace snapvane

namespace KeyboardShortcuts {

class NamedShortcuts;

/// Has a menu entry show the shortcut that is stored for the name, now and after every change of
/// the shortcut or of the keyboard layout; none while none is stored. Takes the place of what the
/// entry was bound to before. Main thread.
void setShortcut(QAction& item, const Name& name, NamedShortcuts& shortcuts,
                 const snapvane::KeyboardLayout& layout);

} // namespace KeyboardShortcuts
