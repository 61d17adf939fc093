#pragma once

#include "app/QXMenuSymbol.h"

#include <QKeySequence>
#include <QString>

#include <optional>
#include <vector>

namespace snapvane {

enum class StatusMenuAction { CaptureArea, ToggleCrosshairLines, OpenSettings, OpenAbout, Quit };

/// One entry of the status menu as it is meant, whatever shows it.
struct StatusMenuEntry {
    bool isSeparator = false;
    QString title;
    StatusMenuAction action = StatusMenuAction::CaptureArea;
    /// The key that goes with the command modifier; empty for none.
    QString keyEquivalent;
    bool isCheckable = false;
    QXMenuSymbol::Symbol symbol = QXMenuSymbol::Symbol::captureArea;

    /// What shows, and acts, for the key equivalent on this desktop, where menus are used with
    /// control; empty for none.
    QKeySequence keySequence() const;
};

/// The entries from top to bottom.
std::vector<StatusMenuEntry> statusMenuEntries();

} // namespace snapvane
