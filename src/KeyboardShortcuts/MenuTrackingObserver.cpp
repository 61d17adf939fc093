#include "KeyboardShortcuts/MenuTrackingObserver.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMenu>

namespace KeyboardShortcuts {

MenuTrackingObserver::MenuTrackingObserver() {
    if (QCoreApplication* application = QCoreApplication::instance()) {
        application->installEventFilter(this);
    }
}

bool MenuTrackingObserver::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && qobject_cast<QMenu*>(watched) != nullptr) {
        opened(watched);
    } else if (event->type() == QEvent::Hide && m_open.contains(watched)) {
        closed(watched);
    }
    return false;
}

void MenuTrackingObserver::opened(QObject* menu) {
    const bool isFirst = m_open.isEmpty();
    if (!m_open.contains(menu)) {
        m_open.insert(menu);
        // A menu may go without ever being hidden.
        connect(menu, &QObject::destroyed, this, &MenuTrackingObserver::closed);
    }
    if (isFirst) {
        Q_EMIT didBeginTracking();
    }
}

void MenuTrackingObserver::closed(QObject* menu) {
    if (m_open.remove(menu)) {
        disconnect(menu, &QObject::destroyed, this, &MenuTrackingObserver::closed);
        if (m_open.isEmpty()) {
            Q_EMIT didEndTracking();
        }
    }
}

} // namespace KeyboardShortcuts
