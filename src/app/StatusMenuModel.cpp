#include "app/StatusMenuModel.h"

#include "base/Translation.h"

namespace snapvane {

QKeySequence StatusMenuEntry::keySequence() const {
    return keyEquivalent.isEmpty()
               ? QKeySequence()
               : QKeySequence(QStringLiteral("Ctrl+%1").arg(keyEquivalent.toUpper()));
}

std::vector<StatusMenuEntry> statusMenuEntries() {
    using enum QXMenuSymbol::Symbol;
    const auto separator = StatusMenuEntry{.isSeparator = true, .title = {}, .keyEquivalent = {}};
    return {
        {.title = translated("Capture Area"),
         .action = StatusMenuAction::CaptureArea,
         .keyEquivalent = {},
         .symbol = captureArea},
        separator,
        {.title = translated("Show crosshair lines while capturing"),
         .action = StatusMenuAction::ToggleCrosshairLines,
         .keyEquivalent = {},
         .isCheckable = true,
         .symbol = crosshairLines},
        {.title = translated("Settings…"),
         .action = StatusMenuAction::OpenSettings,
         .keyEquivalent = QStringLiteral(","),
         .symbol = settings},
        {.title = translated("About Snapvane"),
         .action = StatusMenuAction::OpenAbout,
         .keyEquivalent = {},
         .symbol = about},
        separator,
        {.title = translated("Quit"),
         .action = StatusMenuAction::Quit,
         .keyEquivalent = QStringLiteral("q"),
         .symbol = quit},
    };
}

} // namespace snapvane
