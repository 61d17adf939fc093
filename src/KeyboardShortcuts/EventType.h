#pragma once

namespace KeyboardShortcuts {

enum class EventType { keyDown, keyUp };

} // namespace KeyboardShortcuts
