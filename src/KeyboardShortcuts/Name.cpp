#include "KeyboardShortcuts/Name.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"

namespace KeyboardShortcuts {

Name::Name(QString rawValue, std::optional<Shortcut> initialShortcut)
    : m_rawValue(std::move(rawValue)), m_initialShortcut(std::move(initialShortcut)) {
    if (m_initialShortcut) {
        NamedShortcuts::shared().setInitialShortcutIfNeeded(*this);
    }
}

} // namespace KeyboardShortcuts
