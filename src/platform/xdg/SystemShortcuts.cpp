#include "platform/xdg/SystemShortcuts.h"

#include "platform/xdg/GnomeShortcuts.h"
#include "platform/xdg/KdeShortcuts.h"
#include "platform/xdg/XfceShortcuts.h"

#include <algorithm>

namespace snapvane::xdg {

namespace {

constexpr std::chrono::milliseconds patience{500};

/// The next service's share of the time that is left.
QDeadlineTimer shareOf(QDeadlineTimer deadline) {
    return std::min(deadline, QDeadlineTimer(servicePatience));
}

} // namespace

std::vector<SymbolicHotKey> systemShortcuts(const KeyOfSymbol& keyOfSymbol) {
    const QDeadlineTimer deadline(patience);
    std::vector<SymbolicHotKey> shortcuts = gnomeShortcuts(keyOfSymbol);
    std::ranges::copy(kdeShortcuts(keyOfSymbol, shareOf(deadline)), std::back_inserter(shortcuts));
    std::ranges::copy(xfceShortcuts(keyOfSymbol, shareOf(deadline)), std::back_inserter(shortcuts));
    return shortcuts;
}

} // namespace snapvane::xdg
