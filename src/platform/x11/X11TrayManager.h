#pragma once

#include "platform/xdg/TrayHostWatcher.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

namespace snapvane::x11 {

/// Watches, besides the tray hosts on the session bus, for an X11 tray manager: a client that owns
/// the selection _NET_SYSTEM_TRAY_S<n> and announces itself to the root window. Owned by the
/// platform; main thread.
class X11TrayManager : public xdg::TrayHostWatcher, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11TrayManager();
    ~X11TrayManager() override;

    bool isPresent() const override;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

protected:
    void settled() override;

private:
    bool hasManager() const;

    // Tells of a tray manager a moment after it has announced itself.
    QTimer m_announcement;
};

} // namespace snapvane::x11
