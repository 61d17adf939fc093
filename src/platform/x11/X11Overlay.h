#pragma once

#include "platform/x11/X11Connection.h"

#include "platform/Overlay.h"

#include <QObject>

namespace snapvane::x11 {

class RootGrabber;
class X11Screens;

/// Opens overlay sessions on override-redirect windows. Owned by the platform; main thread.
class X11OverlayHost : public OverlayHost {
public:
    X11OverlayHost(X11Screens& screens, RootGrabber& grabber);
    ~X11OverlayHost() override;

    std::unique_ptr<OverlaySession> open(const OverlayOptions& options,
                                         OverlayClient& client) override;
    QCoro::Task<> menusClosed() override;

private:
    xcb_cursor_t crosshair();

    X11Screens& m_screens;
    RootGrabber& m_grabber;
    // Loaded from the user's cursor theme for the first session, then kept.
    xcb_cursor_t m_crosshair = XCB_NONE;
    // Surfaces that are off the glass but not yet gone belong to its timers.
    QObject m_retired;
};

} // namespace snapvane::x11
