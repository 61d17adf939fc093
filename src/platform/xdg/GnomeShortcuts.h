#pragma once

#include "platform/xdg/Accelerators.h"

#include <vector>

namespace snapvane::xdg {

/// What GNOME's settings give to the window manager, the shell and the media keys, and the user's
/// own commands. Empty unless GNOME is the desktop that runs (XDG_CURRENT_DESKTOP): its schemas are
/// installed on many systems that it does not run on. Schemas that are not installed are left out.
std::vector<SymbolicHotKey> gnomeShortcuts(const KeyOfSymbol& keyOfSymbol);

} // namespace snapvane::xdg
