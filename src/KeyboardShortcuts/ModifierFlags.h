#pragma once

#include <QString>

#include <cstdint>

namespace KeyboardShortcuts {

/// The modifier keys that an event reports, as a bit set. Bits without a name may be set as well.
class ModifierFlags {
public:
    enum Flag : std::uint32_t {
        none = 0,
        capsLock = 0x10000,
        shift = 0x20000,
        control = 0x40000,
        option = 0x80000,
        command = 0x100000,
        function = 0x800000
    };

    constexpr ModifierFlags() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): one flag is a set of one
    constexpr ModifierFlags(Flag flag) : m_rawValue(flag) {}
    explicit constexpr ModifierFlags(std::uint32_t rawValue) : m_rawValue(rawValue) {}

    /// The flags of a Carbon modifier mask; bits of it other than the five modifiers are dropped.
    static ModifierFlags fromCarbon(std::int64_t mask);
    /// The Carbon modifier mask; flags other than the five modifiers are dropped.
    std::int64_t carbon() const;

    constexpr std::uint32_t rawValue() const { return m_rawValue; }
    constexpr bool contains(Flag flag) const { return (m_rawValue & flag) == flag; }
    constexpr ModifierFlags without(Flag flag) const {
        return ModifierFlags(m_rawValue & ~static_cast<std::uint32_t>(flag));
    }

    /// The signs of control, option, shift, command and Function, always in this order.
    QString ks_symbolicRepresentation() const;

    friend constexpr bool operator==(ModifierFlags, ModifierFlags) = default;
    friend constexpr ModifierFlags operator|(ModifierFlags left, ModifierFlags right) {
        return ModifierFlags(left.m_rawValue | right.m_rawValue);
    }

private:
    std::uint32_t m_rawValue = 0;
};

constexpr ModifierFlags operator|(ModifierFlags::Flag left, ModifierFlags::Flag right) {
    return ModifierFlags(left) | ModifierFlags(right);
}

/// A Carbon mask without the bits that are none of the five modifiers.
std::int64_t normalizedCarbonModifiers(std::int64_t mask);

} // namespace KeyboardShortcuts
