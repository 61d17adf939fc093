#pragma once

#include "platform/Panels.h"

namespace snapvane::x11 {

class RootGrabber;
class X11Screens;

/// Panels as override-redirect windows, which no window manager moves, decorates, lists or focuses
/// and which are on every workspace. Owned by the platform; main thread.
class X11Panels : public Panels {
public:
    X11Panels(X11Screens& screens, RootGrabber& grabber) : m_screens(screens), m_grabber(grabber) {}

    std::unique_ptr<Panel> create(std::unique_ptr<QWidget> content,
                                  const PanelOptions& options) override;
    std::unique_ptr<ScreenPanel> cover(std::unique_ptr<QWidget> content, const Screen& screen,
                                       const ScreenPanelOptions& options) override;

private:
    X11Screens& m_screens;
    RootGrabber& m_grabber;
};

} // namespace snapvane::x11
