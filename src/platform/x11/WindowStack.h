#pragma once

#include "platform/x11/TopLevelWindows.h"

#include <QRegion>

#include <cstdint>
#include <limits>
#include <vector>

namespace snapvane::x11 {

/// Fully opaque, as _NET_WM_WINDOW_OPACITY counts.
inline constexpr std::uint32_t fullOpacity = std::numeric_limits<std::uint32_t>::max();

/// A window that is shown.
struct StackedWindow {
    TopLevelWindow window;
    /// The pixels that are its own, the border included, in the server's space.
    QRegion shape;
    /// What compositors are asked to make of it; of no effect without one.
    std::uint32_t opacity = fullOpacity;

    friend bool operator==(const StackedWindow&, const StackedWindow&) = default;
};

/// The windows that are shown at one moment, from the bottom to the top.
struct WindowStack {
    std::vector<StackedWindow> windows;
    /// Whether a compositing manager puts them on the screen.
    bool composited = false;

    /// Any thread, blocks for a few round trips.
    static WindowStack read(const Server& server);

    /// Where in the area the excluded windows can be seen. With a compositor, which may show any
    /// window as translucent, also where others cover them. Pure.
    QRegion regionOf(const std::vector<std::uint32_t>& excluded, const DeviceRect& area) const;

    friend bool operator==(const WindowStack&, const WindowStack&) = default;
};

} // namespace snapvane::x11
