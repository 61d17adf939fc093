#pragma once

#include <optional>
#include <span>

/// Stored shortcuts name a key by its Carbon virtual key code, this system's input drivers by its
/// evdev code. Both name places on a keyboard, whatever is printed there. Any thread.
namespace snapvane::KeyCodes {

/// The keys that one Carbon code stands for.
struct Twins {
    int carbon = 0;
    int evdev = 0;
    /// A second key that Carbon has no code of its own for and counts as the same one; 0 for none.
    int evdevToo = 0;
};

/// All pairs there are.
std::span<const Twins> all();

/// Nothing when no key here is that key.
std::optional<Twins> twinsOfCarbon(int carbonKeyCode);

/// The Carbon code of a key; nothing when it has none.
std::optional<int> carbonOfEvdev(int evdevCode);

} // namespace snapvane::KeyCodes
