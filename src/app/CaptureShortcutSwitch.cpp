#include "app/CaptureShortcutSwitch.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "capture/CaptureShortcut.h"

namespace snapvane {

CaptureShortcutSwitch& CaptureShortcutSwitch::shared() {
    static auto* shortcutSwitch = new CaptureShortcutSwitch;
    return *shortcutSwitch;
}

void CaptureShortcutSwitch::hold(Reason reason) {
    m_reasons.insert(reason);
    KeyboardShortcuts::NamedShortcuts::shared().disable({makeCaptureAreaName()});
}

void CaptureShortcutSwitch::release(Reason reason) {
    m_reasons.erase(reason);
    if (m_reasons.empty()) {
        KeyboardShortcuts::NamedShortcuts::shared().enable({makeCaptureAreaName()});
    }
}

} // namespace snapvane
