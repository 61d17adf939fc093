#pragma once

#include "ChildProcess.h"
#include "VirtualDesktop.h"

#include <optional>

namespace snapvane::testing {

/// A desktop's real panel at the upper edge, with nothing on it but the tray, which shows icons of
/// the StatusNotifier kind and draws their menus. Its settings are there from the start, the panel
/// itself from `show` on; both end with the object. Test thread only.
class XfcePanel {
public:
    explicit XfcePanel(const VirtualDesktop& desktop);

    /// Returns before the panel is ready.
    void show();
    void close() { m_panel.reset(); }

private:
    const VirtualDesktop& m_desktop;
    std::optional<ChildProcess> m_settings;
    std::optional<ChildProcess> m_panel;
};

} // namespace snapvane::testing
