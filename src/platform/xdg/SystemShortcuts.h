#pragma once

#include "platform/xdg/Accelerators.h"

#include <vector>

namespace snapvane::xdg {

/// The shortcuts of every desktop that can be asked; one that is not there adds nothing. Read anew
/// on each call; never longer than half a second. Main thread.
std::vector<SymbolicHotKey> systemShortcuts(const KeyOfSymbol& keyOfSymbol);

} // namespace snapvane::xdg
