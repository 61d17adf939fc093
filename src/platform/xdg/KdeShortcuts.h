#pragma once

#include "platform/xdg/Accelerators.h"
#include "platform/xdg/BusQuestions.h"

#include <vector>

namespace snapvane::xdg {

/// What KDE's global shortcut service on the session bus has given away. Empty when the service
/// does not run (it is not started for this); without what it does not answer in time. Blocks the
/// calling thread until the deadline at most.
std::vector<SymbolicHotKey> kdeShortcuts(const KeyOfSymbol& keyOfSymbol,
                                         QDeadlineTimer deadline = QDeadlineTimer(servicePatience));

} // namespace snapvane::xdg
