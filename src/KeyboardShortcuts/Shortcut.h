#pragma once

#include "KeyboardShortcuts/Key.h"
#include "KeyboardShortcuts/Menu.h"
#include "KeyboardShortcuts/ModifierFlags.h"
#include "KeyboardShortcuts/SpecialKey.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace snapvane {
class KeyboardLayout;
} // namespace snapvane

namespace KeyboardShortcuts {

/// A key event as shortcuts see it.
struct KeyEvent {
    enum class Type : std::uint32_t { KeyDown = 10, KeyUp = 11, FlagsChanged = 12 };

    Type type = Type::KeyDown;
    /// Carbon's.
    std::uint16_t keyCode = 0;
    ModifierFlags modifierFlags;
};

/// A shortcut of the system's own, as the system states it: Carbon key code and modifier mask.
struct SystemHotKey {
    std::int64_t keyCode = 0;
    std::int64_t modifiers = 0;

    friend bool operator==(const SystemHotKey&, const SystemHotKey&) = default;
};

/// A keyboard shortcut: one physical key and a set of modifier keys. A plain value; what is asked
/// of the keyboard or of a menu is for the main thread.
class Shortcut {
public:
    Shortcut(Key key, ModifierFlags modifiers);
    /// Modifier bits that are none of the five modifiers are dropped.
    static Shortcut fromCarbon(std::int64_t keyCode, std::int64_t modifiers);
    /// Nothing unless a key went down or up. Never with the Function modifier, which events carry
    /// for many keys though nobody holds it.
    static std::optional<Shortcut> fromEvent(const KeyEvent& event);

    std::int64_t carbonKeyCode() const { return m_carbonKeyCode; }
    std::int64_t carbonModifiers() const { return m_carbonModifiers; }
    Key key() const { return Key(m_carbonKeyCode); }
    ModifierFlags modifiers() const { return ModifierFlags::fromCarbon(m_carbonModifiers); }
    std::optional<SpecialKey> specialKey() const;

    /// The signs of the modifiers and of the key, without anything between them. U+FFFD stands for
    /// a key that types nothing.
    QString presentableDescription(const snapvane::KeyboardLayout& layout) const;
    /// What the key types without modifiers; nothing for special keys and unless it is exactly one
    /// character. A key code that does not fit 16 bits is a program error.
    std::optional<QString> keyToCharacter(const snapvane::KeyboardLayout& layout) const;
    /// The text that a menu entry has for the key; nothing for keypad keys and keys that type
    /// nothing.
    std::optional<QString> nsMenuItemKeyEquivalent(const snapvane::KeyboardLayout& layout) const;
    /// The same for declarative user interfaces.
    std::optional<QString> swiftUIKeyEquivalent(const snapvane::KeyboardLayout& layout) const;

    /// The first entry, depth first, whose key equivalent is this shortcut; null when there is
    /// none.
    const MenuItem* menuItemWithMatchingShortcut(const Menu& menu,
                                                 const snapvane::KeyboardLayout& layout) const;

    /// The system's own shortcuts in the terms of recorded ones, which never carry the Function
    /// modifier for keys that are marked with it anyway.
    static std::vector<Shortcut> system(std::span<const SystemHotKey> hotKeys);
    /// F12 alone never is, whatever the system says.
    bool isTakenBySystem(std::span<const Shortcut> system) const;
    bool isF12WithoutModifiers() const;

    /// One JSON object with the integers carbonKeyCode and carbonModifiers, in this order.
    QByteArray encoded() const;
    /// Takes the two numbers as they stand. Nothing unless the text is one JSON object that has
    /// both, as whole numbers of 64 bits.
    static std::optional<Shortcut> decoded(const QByteArray& json);

    friend bool operator==(const Shortcut&, const Shortcut&) = default;

private:
    Shortcut() = default;

    std::optional<QString> characterIfAny(const snapvane::KeyboardLayout& layout) const;
    bool matches(const MenuItem& item, const snapvane::KeyboardLayout& layout) const;

    std::int64_t m_carbonKeyCode = 0;
    std::int64_t m_carbonModifiers = 0;
};

} // namespace KeyboardShortcuts

template <> struct std::hash<KeyboardShortcuts::Shortcut> {
    std::size_t operator()(const KeyboardShortcuts::Shortcut& shortcut) const noexcept;
};
