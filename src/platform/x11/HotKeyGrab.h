#pragma once

#include "platform/x11/X11Connection.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace snapvane::x11 {

/// Keys of the server's, with one combination of its modifier bits.
struct KeyCombination {
    std::vector<std::uint8_t> keyCodes;
    std::uint16_t modifiers = 0;

    friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

/// Holds a key combination: its keys come to us, whatever window has the keyboard and whichever
/// lock keys are on, until the object goes. Main thread, Qt's connection.
class HotKeyGrab {
public:
    /// Takes the combination with each of the lock combinations given; null, and nothing held, when
    /// the server refuses one of them because another program has it.
    static std::unique_ptr<HotKeyGrab> take(const Server& server, const KeyCombination& combination,
                                            const std::vector<std::uint16_t>& lockCombinations);
    ~HotKeyGrab();
    HotKeyGrab(const HotKeyGrab&) = delete;
    HotKeyGrab& operator=(const HotKeyGrab&) = delete;

private:
    struct Part {
        std::uint8_t keyCode;
        std::uint16_t modifiers;
    };

    HotKeyGrab(const Server& server, std::vector<Part> parts)
        : m_server(server), m_parts(std::move(parts)) {}

    Server m_server;
    std::vector<Part> m_parts;
};

} // namespace snapvane::x11
