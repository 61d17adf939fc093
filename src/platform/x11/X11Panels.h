#pragma once

#include "platform/Panels.h"

namespace snapvane::x11 {

class X11Screens;

/// Panels as override-redirect windows, which no window manager moves, decorates, lists or focuses
/// and which are on every workspace. Owned by the platform; main thread.
class X11Panels : public Panels {
public:
    explicit X11Panels(X11Screens& screens) : m_screens(screens) {}

    std::unique_ptr<Panel> create(std::unique_ptr<QWidget> content,
                                  const PanelOptions& options) override;

private:
    X11Screens& m_screens;
};

} // namespace snapvane::x11
