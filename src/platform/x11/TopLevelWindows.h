#pragma once

#include "platform/x11/X11Connection.h"

#include "base/Geometry.h"

#include <vector>

// The windows that stand on the root window. All questions of a kind are asked at once, so that the
// number of windows does not count; windows that go meanwhile are left out. Any thread, each
// function blocks for a few round trips.

namespace snapvane::x11 {

/// A child of the root window as it stood when it was read.
struct TopLevelWindow {
    xcb_window_t id = XCB_WINDOW_NONE;
    /// The border included.
    DeviceRect area;
    int border = 0;
    int depth = 0;
    xcb_visualid_t visual = XCB_NONE;
    bool viewable = false;

    friend bool operator==(const TopLevelWindow&, const TopLevelWindow&) = default;
};

/// Those that have pixels, from the bottom of the stack to its top.
std::vector<TopLevelWindow> topLevelWindows(const Server& server);

/// For each of the windows the one that its program made: the window that a window manager has
/// taken charge of, be it the window itself or one inside the frame; else the window itself.
std::vector<xcb_window_t> clientWindows(const Server& server,
                                        const std::vector<TopLevelWindow>& topLevels);

} // namespace snapvane::x11
