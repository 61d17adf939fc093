#pragma once

#include "XcbConnection.h"

namespace snapvane::testing {

/// Whether the window manager takes charge of a window that is mapped now. One that has only just
/// announced itself may still overlook it for good.
bool managesNewWindows(const XcbConnection& connection);

} // namespace snapvane::testing
