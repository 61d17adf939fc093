#pragma once

#include "KeyboardShortcuts/Name.h"

namespace snapvane {

/// The name of the shortcut that starts a capture; a fresh installation gives it control, shift and
/// P. Making it stores that default where nothing is stored.
KeyboardShortcuts::Name makeCaptureAreaName();

} // namespace snapvane
