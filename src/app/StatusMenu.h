#pragma once

#include "app/MenuTracking.h"
#include "app/StatusMenuModel.h"

#include <QMenu>

#include <functional>
#include <map>
#include <vector>

namespace snapvane {

/// The menu behind the tray icon, made from the model. All entries are always enabled. Owned by
/// StatusItem; main thread.
class StatusMenu : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(StatusMenuAction)>;

    explicit StatusMenu(Handler handler);

    QMenu& menu() { return m_menu; }
    MenuTracking& tracking() { return m_tracking; }
    QAction& action(StatusMenuAction action) { return *m_actions.at(action); }

protected:
    /// Key equivalents act while the menu is open, which Qt leaves out for menus of no window.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void add(const StatusMenuEntry& entry);

    Handler m_handler;
    QMenu m_menu;
    MenuTracking m_tracking{m_menu};
    std::map<StatusMenuAction, QAction*> m_actions;
    // Those whose key equivalents act in the menu. The global shortcut that an entry shows is not
    // among them: pressed in the menu it must start nothing.
    std::vector<QAction*> m_withKeyEquivalent;
};

} // namespace snapvane
