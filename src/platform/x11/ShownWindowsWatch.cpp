#include "platform/x11/ShownWindowsWatch.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

namespace snapvane::x11 {

namespace {

/// An icon in a tray stands inside the tray's window and is shown for the whole run. It has no
/// parent as far as Qt knows, only this name.
bool isTrayIcon(const QWindow& window) {
    return window.objectName().startsWith(QLatin1String("QSystemTrayIconSys"));
}

bool coversOthers(const QWindow& window) {
    return window.parent() == nullptr && window.type() != Qt::ForeignWindow &&
           window.type() != Qt::Desktop && !isTrayIcon(window);
}

} // namespace

ShownWindowsWatch::ShownWindowsWatch() {
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible()) {
            note(*window);
        }
    }
    qGuiApp->installEventFilter(this);
}

bool ShownWindowsWatch::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::Show && watched->isWindowType()) {
        note(*static_cast<QWindow*>(watched));
    } else if (type == QEvent::Hide && watched->isWindowType()) {
        forget(watched);
    }
    return false;
}

void ShownWindowsWatch::note(const QWindow& window) {
    if (!coversOthers(window) || !m_shown.insert(&window).second) {
        return;
    }
    // One that goes without having been hidden.
    connect(&window, &QObject::destroyed, this, &ShownWindowsWatch::forget);
    if (!m_redirection) {
        m_redirection.emplace(qtServer());
    }
}

void ShownWindowsWatch::forget(const QObject* window) {
    if (m_shown.erase(window) == 0) {
        return;
    }
    disconnect(window, &QObject::destroyed, this, &ShownWindowsWatch::forget);
    if (m_shown.empty()) {
        m_redirection.reset();
    }
}

} // namespace snapvane::x11
