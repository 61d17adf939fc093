#include "capture/CaptureShortcut.h"

namespace snapvane {

KeyboardShortcuts::Name makeCaptureAreaName() {
    using KeyboardShortcuts::Key;
    using KeyboardShortcuts::ModifierFlags;
    using KeyboardShortcuts::Shortcut;
    return {QStringLiteral("captureArea"),
            Shortcut(Key::p, ModifierFlags::control | ModifierFlags::shift)};
}

} // namespace snapvane
