#include "platform/x11/CompositorWatch.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

namespace snapvane::x11 {

CompositorWatch::CompositorWatch(const Server& server, xcb_window_t window, bool translucent,
                                 std::function<void()> changed)
    : m_server(server), m_translucent(translucent), m_changed(std::move(changed)) {
    // A display that is going has no extensions any more.
    if (!hasExtension(server, &xcb_xfixes_id)) {
        return;
    }
    m_selectionEvent = xcb_get_extension_data(server.connection, &xcb_xfixes_id)->first_event +
                       XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(server.connection, window, compositorSelection(server),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    QCoreApplication::instance()->installNativeEventFilter(this);
    // It may have changed since the windows were made.
    check();
}

CompositorWatch::~CompositorWatch() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool CompositorWatch::showsTransparency(const Server& server) {
    return hasCompositor(server) && argbVisual(server) != XCB_NONE;
}

bool CompositorWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType == "xcb_generic_event_t" && m_selectionEvent >= 0) {
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        if ((event->response_type & 0x7f) == m_selectionEvent) {
            check();
        }
    }
    return false; // Qt listens too.
}

void CompositorWatch::check() {
    // The event may be about another selection.
    if (showsTransparency(m_server) != m_translucent) {
        QMetaObject::invokeMethod(
            &m_context,
            [this] {
                // It may well end this watch.
                const auto changed = m_changed;
                changed();
            },
            Qt::QueuedConnection);
    }
}

} // namespace snapvane::x11
