#pragma once

#include "app/StatusMenu.h"

#include <QSystemTrayIcon>

#include <memory>

namespace snapvane {

class TrayHost;

/// The program's place in the tray: the icon and the menu behind it. An icon exists while there is
/// a host for it, and is made anew when a host comes back. Without any host the program goes on
/// without one. Owned by AppDelegate; main thread.
class StatusItem : public QObject {
    Q_OBJECT

public:
    StatusItem(TrayHost& host, StatusMenu::Handler handler);
    ~StatusItem() override;

    StatusMenu& menu() { return m_menu; }
    bool hasButton() const { return m_icon != nullptr; }

    /// The button's image, or, when there is no drawing of that name, the letters "SV".
    static QIcon buttonImage(const QString& symbolName);

private:
    void makeIcon();
    void handleActivation(QSystemTrayIcon::ActivationReason reason);

    TrayHost& m_host;
    StatusMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace snapvane
