#pragma once

#include <QObject>
#include <QSet>

namespace KeyboardShortcuts {

/// Tells when the first menu of the program opens and when the last one closes, submenus included.
/// Only menus that the program shows itself count: one that another process draws takes no keys
/// from us. Owned by HotKeyCenter; main thread.
class MenuTrackingObserver : public QObject {
    Q_OBJECT

public:
    MenuTrackingObserver();

Q_SIGNALS:
    void didBeginTracking();
    void didEndTracking();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void opened(QObject* menu);
    void closed(QObject* menu);

    QSet<QObject*> m_open;
};

} // namespace KeyboardShortcuts
