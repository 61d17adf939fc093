#pragma once

#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <functional>

namespace snapvane::x11 {

/// Tells when compositing is turned on or off while windows of ours are shown: without a compositor
/// see-through windows are black, and with one opaque windows that cover a screen may end
/// compositing. Owned by whoever shows the windows; main thread, Qt's connection.
class CompositorWatch : public QAbstractNativeEventFilter {
public:
    /// Tells, from the main loop, when the screen does not show transparency as `translucent` says,
    /// or comes not to. `window` is one of the caller's; it lives as long as the watch.
    CompositorWatch(const Server& server, xcb_window_t window, bool translucent,
                    std::function<void()> changed);
    ~CompositorWatch() override;
    CompositorWatch(const CompositorWatch&) = delete;
    CompositorWatch& operator=(const CompositorWatch&) = delete;

    /// True when see-through windows are just that on the screen.
    static bool showsTransparency(const Server& server);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void check();

    Server m_server;
    bool m_translucent;
    std::function<void()> m_changed;
    int m_selectionEvent = -1;
    QObject m_context;
};

} // namespace snapvane::x11
