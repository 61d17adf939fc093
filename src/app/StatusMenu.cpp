#include "app/StatusMenu.h"

#include <QKeyEvent>

namespace snapvane {

StatusMenu::StatusMenu(Handler handler) : m_handler(std::move(handler)) {
    for (const StatusMenuEntry& entry : statusMenuEntries()) {
        add(entry);
    }
    m_menu.installEventFilter(this);
}

bool StatusMenu::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
    for (QAction* action : m_withKeyEquivalent) {
        if (action->shortcut() == pressed) {
            m_menu.close();
            action->trigger();
            return true;
        }
    }
    return false;
}

void StatusMenu::add(const StatusMenuEntry& entry) {
    if (entry.isSeparator) {
        m_menu.addSeparator();
        return;
    }
    QAction* action = m_menu.addAction(entry.title);
    action->setObjectName(QXMenuSymbol::symbolName(entry.symbol));
    action->setIcon(QXMenuSymbol::imageOrPlaceholder(QXMenuSymbol::symbolName(entry.symbol)));
    action->setIconVisibleInMenu(true);
    action->setToolTip(QXMenuSymbol::accessibilityDescription(entry.symbol));
    if (!entry.keyEquivalent.isEmpty()) {
        action->setShortcut(entry.keySequence());
        m_withKeyEquivalent.push_back(action);
    }
    action->setShortcutVisibleInContextMenu(true);
    action->setCheckable(entry.isCheckable);
    m_actions[entry.action] = action;
    connect(action, &QAction::triggered, this, [this, what = entry.action] { m_handler(what); });
}

} // namespace snapvane
