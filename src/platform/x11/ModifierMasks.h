#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace snapvane::x11 {

/// Which of the server's eight modifier bits stand for what on this keyboard. Shift, control and
/// the caps lock have bits of their own; the others are where the user's keyboard puts them, 0 when
/// it has none.
struct ModifierMasks {
    std::uint16_t option = 0;
    std::uint16_t command = 0;
    std::uint16_t numLock = 0;
    std::uint16_t scrollLock = 0;

    friend bool operator==(const ModifierMasks&, const ModifierMasks&) = default;

    /// The server's bits of a Carbon mask; nothing when this keyboard lacks one of the modifiers.
    std::optional<std::uint16_t> fromCarbon(std::uint32_t carbon) const;
    /// The Carbon mask of an event's state; what is no modifier of a shortcut is left out.
    std::uint32_t toCarbon(std::uint32_t state) const;

    /// Caps, Num and Scroll Lock together.
    std::uint16_t locks() const;
    /// Every combination of the lock keys, none of them included, each once.
    std::vector<std::uint16_t> lockCombinations() const;
};

} // namespace snapvane::x11
