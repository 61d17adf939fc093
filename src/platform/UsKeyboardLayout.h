#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace snapvane {

/// The text that a key gives without modifiers on a US keyboard, by its Carbon key code: what holds
/// where no layout with Latin letters is to be had. Nothing for keys that type nothing. Any thread.
std::optional<QString> usCharacter(std::uint16_t keyCode);

} // namespace snapvane
