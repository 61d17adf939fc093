#pragma once

#include "platform/x11/X11Connection.h"

#include "base/Geometry.h"

#include <vector>

namespace snapvane::x11 {

/// True when a menu or another override-redirect window, of whatever program, is viewable under the
/// pointer. Windows that cover a whole screen are none: they are backdrops, games or another
/// program's overlay and do not go away by themselves. Blocks for a few round trips.
bool isMenuAtPointer(const Server& server, const std::vector<DeviceRect>& screens);

} // namespace snapvane::x11
