#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

class QMenu;

namespace snapvane {

/// Tells when the status menu opens and closes. A tray host that draws the menu itself reports the
/// opening but never the closing; then an entry that is chosen, or ten seconds, count as closing,
/// so that nothing stays switched off for good. Owned by StatusMenu; main thread.
class MenuTracking : public QObject {
    Q_OBJECT

public:
    /// `longest` is how long a menu may stay open that its host never reports as closed.
    explicit MenuTracking(QMenu& menu,
                          std::chrono::milliseconds longest = std::chrono::seconds(10));

    bool isOpen() const { return m_isOpen; }

Q_SIGNALS:
    void willOpen();
    void didClose();

private:
    void open();
    void close();

    QMenu& m_menu;
    bool m_isOpen = false;
    std::chrono::milliseconds m_longest;
    QTimer m_limit;
};

} // namespace snapvane
