#include "app/MenuTracking.h"

#include <QMenu>

namespace snapvane {

MenuTracking::MenuTracking(QMenu& menu, std::chrono::milliseconds longest)
    : m_menu(menu), m_longest(longest) {
    m_limit.setSingleShot(true);
    connect(&m_menu, &QMenu::aboutToShow, this, &MenuTracking::open);
    connect(&m_menu, &QMenu::aboutToHide, this, &MenuTracking::close);
    connect(&m_menu, &QMenu::triggered, this, &MenuTracking::close);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        // A menu of our own that is still on the screen will report its closing.
        if (!m_menu.isVisible()) {
            close();
        }
    });
}

void MenuTracking::open() {
    m_limit.start(m_longest);
    if (!m_isOpen) {
        m_isOpen = true;
        Q_EMIT willOpen();
    }
}

void MenuTracking::close() {
    m_limit.stop();
    if (m_isOpen) {
        m_isOpen = false;
        Q_EMIT didClose();
    }
}

} // namespace snapvane
