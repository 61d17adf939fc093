#include "KeyboardShortcuts/Shortcut.h"

#include "ShortcutPrinting.h"

#include <gmock/gmock.h>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<Shortcut> systemOf(const std::vector<SystemHotKey>& hotKeys) {
    return Shortcut::system(hotKeys);
}

} // namespace

TEST(SystemShortcuts, NothingGivesNothing) {
    EXPECT_THAT(systemOf({}), IsEmpty());
}

TEST(SystemShortcuts, KeepTheirOrder) {
    EXPECT_THAT(systemOf({{35, 0x1200}, {0, 0x100}}),
                ElementsAre(Shortcut::fromCarbon(35, 0x1200), Shortcut::fromCarbon(0, 0x100)));
}

TEST(SystemShortcuts, AreNormalised) {
    EXPECT_THAT(systemOf({{35, 0x1200 | 0x2400}}), ElementsAre(Shortcut::fromCarbon(35, 0x1200)));
}

TEST(SystemShortcuts, LoseFunctionOnKeysThatAreMarkedWithIt) {
    std::size_t without = 0;
    for (std::int64_t code = 0; code < 128; ++code) {
        const auto system = systemOf({{code, 0x20000 | 0x1000}});
        ASSERT_EQ(system.size(), 1U);
        const bool isMarked = Key(code).hasSynthesizedFunctionModifier();
        EXPECT_EQ(system[0].carbonModifiers(), isMarked ? 0x1000 : 0x21000) << code;
        without += isMarked ? 1U : 0U;
    }
    EXPECT_EQ(without, 31U);
}

TEST(SystemShortcuts, ThoseInTheListAreTaken) {
    const auto system = systemOf({{35, 0x1200}, {123, 0x21000}});
    EXPECT_TRUE(
        Shortcut(Key::p, ModifierFlags::control | ModifierFlags::shift).isTakenBySystem(system));
    EXPECT_TRUE(Shortcut(Key::leftArrow, ModifierFlags::control).isTakenBySystem(system));
    EXPECT_FALSE(Shortcut(Key::p, ModifierFlags::control).isTakenBySystem(system));
    EXPECT_FALSE(
        Shortcut(Key::a, ModifierFlags::control | ModifierFlags::shift).isTakenBySystem(system));
    EXPECT_FALSE(Shortcut(Key::p, ModifierFlags::control).isTakenBySystem({}));
}

TEST(SystemShortcuts, F12AloneIsNeverTaken) {
    const auto system = systemOf({{111, 0}, {111, 0x100}, {103, 0}});
    EXPECT_FALSE(Shortcut(Key::f12, ModifierFlags::none).isTakenBySystem(system));
    EXPECT_TRUE(Shortcut(Key::f12, ModifierFlags::command).isTakenBySystem(system));
    EXPECT_FALSE(Shortcut(Key::f12, ModifierFlags::shift).isTakenBySystem(system));
    EXPECT_TRUE(Shortcut(Key::f11, ModifierFlags::none).isTakenBySystem(system));
}

TEST(SystemShortcuts, F12AloneIsKnown) {
    EXPECT_TRUE(Shortcut(Key::f12, ModifierFlags::none).isF12WithoutModifiers());
    EXPECT_FALSE(Shortcut(Key::f12, ModifierFlags::command).isF12WithoutModifiers());
    EXPECT_FALSE(Shortcut(Key::f11, ModifierFlags::none).isF12WithoutModifiers());
}

} // namespace KeyboardShortcuts
