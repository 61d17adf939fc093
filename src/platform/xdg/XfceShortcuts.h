#pragma once

#include "platform/xdg/Accelerators.h"
#include "platform/xdg/BusQuestions.h"

#include <vector>

namespace snapvane::xdg {

/// What Xfce's keyboard channel gives to commands and to the window manager. Empty when its
/// settings service does not run (it is not started for this) or does not answer in time. Blocks
/// the calling thread until the deadline at most.
std::vector<SymbolicHotKey>
xfceShortcuts(const KeyOfSymbol& keyOfSymbol,
              QDeadlineTimer deadline = QDeadlineTimer(servicePatience));

} // namespace snapvane::xdg
