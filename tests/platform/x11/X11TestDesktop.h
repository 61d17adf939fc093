#pragma once

#include "support/VirtualDesktop.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <chrono>
#include <functional>

namespace snapvane {

/// The desktop that this program's Qt runs on: two screens of 1280 × 800 side by side, no
/// compositor, the test pattern on the root window. The environment variable SNAPVANE_TEST_DEPTH
/// gives it another depth than 24, then without the pattern.
testing::VirtualDesktop& testDesktop();

inline constexpr QSize testScreenSize = {1280, 800};

/// Lets Qt work until the condition holds; false when it does not within a few seconds.
bool waitForEvents(const std::function<bool()>& condition);

/// Lets Qt work off whatever comes in for a moment.
void settle();

} // namespace snapvane
