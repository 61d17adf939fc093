#include "KeyboardShortcuts/Shortcut.h"

#include "ShortcutPrinting.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace KeyboardShortcuts {

namespace {

Shortcut of(std::int64_t keyCode, std::uint32_t flags) {
    return Shortcut(Key(keyCode), ModifierFlags(flags));
}

} // namespace

TEST(Shortcut, KeepsKeyAndCarbonMask) {
    const Shortcut shortcut(Key::p, ModifierFlags(0x60000));
    EXPECT_EQ(shortcut.carbonKeyCode(), 35);
    EXPECT_EQ(shortcut.carbonModifiers(), 0x1200);
    EXPECT_EQ(shortcut.key(), Key::p);
    EXPECT_EQ(shortcut.modifiers(), ModifierFlags(0x60000));
}

TEST(Shortcut, IsTheSameFromFlagsAsFromCarbon) {
    EXPECT_EQ(of(35, 0x60000), Shortcut::fromCarbon(35, 0x1200));
    EXPECT_EQ(of(35, 0x9e0000), Shortcut::fromCarbon(35, 0x21b00));
}

TEST(Shortcut, CapsLockIsNeverCarried) {
    EXPECT_EQ(of(35, 0x70000), of(35, 0x60000));
    EXPECT_EQ(of(35, 0x10000).carbonModifiers(), 0);
}

TEST(Shortcut, FlagsThatAreNoModifiersAreDropped) {
    EXPECT_EQ(of(35, 0xffffffff).carbonModifiers(), 0x21b00);
    EXPECT_EQ(of(35, 0x200000).carbonModifiers(), 0);
}

TEST(Shortcut, CarbonBitsThatAreNoModifiersAreDropped) {
    EXPECT_EQ(Shortcut::fromCarbon(35, -1).carbonModifiers(), 0x21b00);
    EXPECT_EQ(Shortcut::fromCarbon(35, 0x1200 | 0x400 | 0x2000).carbonModifiers(), 0x1200);
}

TEST(Shortcut, AnyKeyCodeIsKept) {
    for (const std::int64_t code :
         {std::int64_t{-1}, std::int64_t{0x10000}, INT64_MIN, INT64_MAX}) {
        EXPECT_EQ(Shortcut::fromCarbon(code, 0).carbonKeyCode(), code);
        EXPECT_EQ(of(code, 0).carbonKeyCode(), code);
    }
}

TEST(Shortcut, IsEqualWhenBothFieldsAre) {
    EXPECT_EQ(of(35, 0x20000), of(35, 0x20000));
    EXPECT_NE(of(35, 0x20000), of(35, 0x40000));
    EXPECT_NE(of(35, 0x20000), of(34, 0x20000));
}

TEST(Shortcut, IsHashedByBothFields) {
    const std::hash<Shortcut> hash;
    EXPECT_EQ(hash(of(35, 0x60000)), hash(Shortcut::fromCarbon(35, 0x1200)));
    std::unordered_set<std::size_t> hashes;
    for (std::int64_t code = 0; code < 128; ++code) {
        hashes.insert(hash(Shortcut::fromCarbon(code, 0x100)));
        hashes.insert(hash(Shortcut::fromCarbon(code, 0x200)));
    }
    EXPECT_EQ(hashes.size(), 256U);
    // The fields do not stand for each other.
    EXPECT_NE(hash(Shortcut::fromCarbon(0x100, 0x200)), hash(Shortcut::fromCarbon(0x200, 0x100)));
}

TEST(Shortcut, SpecialKeyIsThatOfTheKeyCode) {
    EXPECT_EQ(of(36, 0).specialKey(), SpecialKey::return_);
    EXPECT_EQ(of(90, 0x20000).specialKey(), SpecialKey::f20);
    EXPECT_EQ(of(35, 0).specialKey(), std::nullopt);
    EXPECT_EQ(of(-5, 0).specialKey(), std::nullopt);
}

TEST(ShortcutFromEvent, TakesKeysThatGoDownOrUp) {
    for (const auto type : {KeyEvent::Type::KeyDown, KeyEvent::Type::KeyUp}) {
        const auto shortcut = Shortcut::fromEvent({type, 35, ModifierFlags(0x60000)});
        EXPECT_EQ(shortcut, of(35, 0x60000));
    }
    EXPECT_EQ(static_cast<int>(KeyEvent::Type::KeyDown), 10);
    EXPECT_EQ(static_cast<int>(KeyEvent::Type::KeyUp), 11);
}

TEST(ShortcutFromEvent, TakesNoOtherEvents) {
    for (std::uint32_t type = 0; type < 64; ++type) {
        if (type != 10 && type != 11) {
            const KeyEvent event = {static_cast<KeyEvent::Type>(type), 35, ModifierFlags(0x60000)};
            EXPECT_EQ(Shortcut::fromEvent(event), std::nullopt) << type;
        }
    }
}

TEST(ShortcutFromEvent, NeverTakesFunction) {
    const KeyEvent event = {KeyEvent::Type::KeyDown, 122, ModifierFlags(0x800000 | 0x20000)};
    EXPECT_EQ(Shortcut::fromEvent(event), of(122, 0x20000));
    const KeyEvent letter = {KeyEvent::Type::KeyUp, 0, ModifierFlags(0x800000)};
    EXPECT_EQ(Shortcut::fromEvent(letter), of(0, 0));
}

TEST(ShortcutFromEvent, DropsWhatIsNoModifier) {
    const KeyEvent event = {KeyEvent::Type::KeyDown, 35, ModifierFlags(0xffffffff)};
    EXPECT_EQ(Shortcut::fromEvent(event), of(35, 0x1e0000));
}

TEST(ShortcutFromEvent, TakesAnyKeyCode) {
    const KeyEvent event = {KeyEvent::Type::KeyDown, 0xffff, ModifierFlags()};
    EXPECT_EQ(Shortcut::fromEvent(event), of(0xffff, 0));
}

} // namespace KeyboardShortcuts
