#pragma once

namespace snapvane {

/// Where a capture was asked for. A menu may still be on the glass when its entry is chosen, since
/// a tray host draws it in a process of its own.
enum class CaptureTrigger { Shortcut, Menu };

} // namespace snapvane
