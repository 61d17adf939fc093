#include "platform/x11/X11TrayManager.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/Xcb.h"

#include <QCoreApplication>

namespace snapvane::x11 {

namespace {

// A panel that offers both kinds of tray announces them one after the other, and the kind that is
// there when the first icon is made is the one that Qt stays with.
constexpr std::chrono::milliseconds otherKindComes(500);

xcb_atom_t traySelection(const Server& server) {
    return atom(server, "_NET_SYSTEM_TRAY_S" + QByteArray::number(server.screenNumber));
}

} // namespace

X11TrayManager::X11TrayManager() {
    m_announcement.setSingleShot(true);
    connect(&m_announcement, &QTimer::timeout, this, [this] {
        if (isSettled() && !TrayHostWatcher::isPresent() && hasManager()) {
            Q_EMIT appeared();
        }
    });
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11TrayManager::~X11TrayManager() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

bool X11TrayManager::isPresent() const {
    // Which kind of icon Qt makes depends on the hosts there are at that moment, so nobody is told
    // of the one before the other is known about.
    return isSettled() && (TrayHostWatcher::isPresent() || hasManager());
}

void X11TrayManager::settled() {
    if (!TrayHostWatcher::isPresent() && hasManager()) {
        Q_EMIT appeared();
    }
}

bool X11TrayManager::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const Server server = qtServer();
    const auto& announcement = *reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (announcement.format == 32 && announcement.type == atom(server, "MANAGER") &&
        announcement.data.data32[1] == traySelection(server)) {
        m_announcement.start(otherKindComes);
    }
    return false;
}

bool X11TrayManager::hasManager() const {
    const Server server = qtServer();
    const auto cookie = xcb_get_selection_owner(server.connection, traySelection(server));
    const auto reply = owned(xcb_get_selection_owner_reply(server.connection, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace snapvane::x11
