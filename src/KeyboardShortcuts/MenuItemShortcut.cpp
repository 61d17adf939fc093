#include "KeyboardShortcuts/MenuItemShortcut.h"

#include "KeyboardShortcuts/KeySequence.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "platform/KeyboardLayout.h"

#include <QAction>
#include <QPointer>

namespace KeyboardShortcuts {

namespace {

const QString bindingName = QStringLiteral("KeyboardShortcuts.binding");

} // namespace

void setShortcut(QAction& item, const Name& name, NamedShortcuts& shortcuts,
                 const snapvane::KeyboardLayout& layout) {
    // An entry shows one name's shortcut.
    delete item.findChild<QObject*>(bindingName, Qt::FindDirectChildrenOnly);
    auto* binding = new QObject(&item);
    binding->setObjectName(bindingName);
    const auto refresh = [&item, name, shortcutsLeft = QPointer(&shortcuts),
                          layoutLeft = QPointer(&layout)] {
        if (!shortcutsLeft) {
            return;
        }
        const auto shortcut = shortcutsLeft->getShortcut(name);
        item.setShortcut(shortcut && layoutLeft ? keySequence(*shortcut, *layoutLeft)
                                                : QKeySequence());
    };
    QObject::connect(&shortcuts, &NamedShortcuts::shortcutByNameDidChange, binding,
                     [name, refresh](const Name& changed) {
                         if (changed == name) {
                             refresh();
                         }
                     });
    QObject::connect(&layout, &snapvane::KeyboardLayout::changed, binding, refresh);
    refresh();
}

} // namespace KeyboardShortcuts
