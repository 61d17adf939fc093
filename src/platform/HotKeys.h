#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace snapvane {

/// The modifier keys as stored shortcuts count them: bits of a Carbon modifier mask.
/// Source: the Carbon event manager's published constants (cmdKey, shiftKey, optionKey, controlKey)
/// and the bit that it uses for the Function key.
namespace CarbonModifier {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
inline constexpr std::uint32_t function = 0x20000;
} // namespace CarbonModifier

/// Names a registered hot key: whose it is, and which of theirs.
struct HotKeyIdentifier {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;

    friend bool operator==(const HotKeyIdentifier&, const HotKeyIdentifier&) = default;
};

enum class HotKeyEventKind : std::uint32_t {
    RawKeyDown = 1,
    RawKeyUp = 3,
    HotKeyPressed = 5,
    HotKeyReleased = 6
};

/// The class of all keyboard events, the four characters "keyb".
inline constexpr std::uint32_t keyboardEventClass = 0x6b657962;

struct HotKeyEventType {
    std::uint32_t eventClass = keyboardEventClass;
    HotKeyEventKind kind = HotKeyEventKind::HotKeyPressed;

    friend bool operator==(const HotKeyEventType&, const HotKeyEventType&) = default;
};

struct HotKeyEvent {
    HotKeyEventType type;
    /// Of a hot key event: which one it is, and why that could not be read (0 when it could).
    HotKeyIdentifier identifier = {};
    std::int32_t identifierStatus = 0;
    /// Of a raw key event: the Carbon key code and mask, and whether the key is merely being held.
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;
    bool isRepeat = false;
};

/// What a handler answers; anything else is an error that it met.
inline constexpr std::int32_t hotKeyEventHandled = 0;
inline constexpr std::int32_t hotKeyEventNotHandled = -9874;

/// A hot key that the system holds for us, until the object goes.
class HotKeyRegistration {
public:
    virtual ~HotKeyRegistration() = default;
};

/// A shortcut of the desktop's own, as the desktop describes it.
struct SymbolicHotKey {
    bool isEnabled = false;
    std::optional<std::int64_t> keyCode;
    std::optional<std::int64_t> modifiers;
};

/// Key combinations that reach the program whatever application is in front. Key codes and
/// modifiers are Carbon's. Main thread.
class HotKeys {
public:
    using EventHandler = std::function<std::int32_t(const HotKeyEvent&)>;

    virtual ~HotKeys() = default;

    /// Null when the system refuses, as it does when another program holds the combination, or this
    /// one does already. `lost`
    /// is called, at most once and not from within this call, if the system takes the combination
    /// back later; the registration may be dropped from there.
    virtual std::unique_ptr<HotKeyRegistration> registerHotKey(std::uint32_t keyCode,
                                                               std::uint32_t modifiers,
                                                               HotKeyIdentifier identifier,
                                                               std::function<void()> lost) = 0;
    /// False when there can be none. A handler gets events of the types that were added, none to
    /// begin with. An event that it handles goes nowhere else.
    virtual bool installEventHandler(EventHandler handler) = 0;
    /// Raw key events are those that windows of this program would get.
    virtual void addEventTypes(std::span<const HotKeyEventType> types) = 0;
    virtual void removeEventTypes(std::span<const HotKeyEventType> types) = 0;

    /// True when another program holds the combination.
    virtual bool isHeldElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// The desktop's own shortcuts, read anew on each call. May wait for other programs, but no
    /// longer than a user would put up with after a key press.
    virtual std::vector<SymbolicHotKey> symbolicHotKeys() = 0;
};

} // namespace snapvane
