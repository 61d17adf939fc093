#pragma once

#include "platform/x11/X11Connection.h"

#include "platform/ScreenMapping.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

namespace snapvane::x11 {

/// The monitors as RandR lists them, with Qt's scale factors. Owned by the platform; main thread.
class X11Screens : public Screens, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11Screens();
    ~X11Screens() override;

    ScreenList list() override;
    GlobalPoint pointerLocation() override;

    /// The screens in the server's space.
    std::vector<DeviceRect> nativeFrames();

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    bool tellsOfScreens(const xcb_generic_event_t& event) const;
    void noteChange();
    void announceChange();

    Server m_server;
    int m_firstRandrEvent = -1;
    bool m_stale = true;
    ScreenList m_list;
    // What those who listen for changes know.
    ScreenList m_announced;
    QTimer m_announcement;
};

/// Puts the primary monitor first: the one marked so, else the one at 0,0, else the first; the
/// others keep their order. A monitor that only mirrors part of another one is left out. Pure.
struct Monitor {
    ScreenMapping::NativeScreen screen;
    bool isPrimary = false;
};
std::vector<ScreenMapping::NativeScreen> primaryFirst(std::vector<Monitor> monitors);

} // namespace snapvane::x11
