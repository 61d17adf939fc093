#include "KeyboardShortcuts/ModifierFlags.h"

#include "ShortcutPrinting.h"
#include "platform/HotKeys.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

struct Bit {
    const char* name;
    std::uint32_t flag;
    std::int64_t carbon;
    QString sign;
};

/// In the order in which they are shown.
const Bit bits[] = {
    {"control", 0x40000, 0x1000, QStringLiteral("\u2303")},
    {"option", 0x80000, 0x800, QStringLiteral("\u2325")},
    {"shift", 0x20000, 0x200, QStringLiteral("\u21e7")},
    {"command", 0x100000, 0x100, QStringLiteral("\u2318")},
    {"function", 0x800000, 0x20000, QStringLiteral("\U0001f310\ufe0e")},
};

constexpr std::uint32_t allFlags = 0x9e0000;
constexpr std::int64_t allCarbon = 0x21b00;

class ModifierBit : public ::testing::TestWithParam<Bit> {};
/// A number whose bits choose among the five modifiers.
class ModifierCombination : public ::testing::TestWithParam<unsigned> {};

template <typename Visitor> void eachBit(unsigned combination, const Visitor& visit) {
    for (std::size_t index = 0; index < std::size(bits); ++index) {
        if ((combination >> index & 1U) != 0) {
            visit(bits[index]);
        }
    }
}

} // namespace

TEST_P(ModifierBit, BecomesItsCarbonBit) {
    EXPECT_EQ(ModifierFlags(GetParam().flag).carbon(), GetParam().carbon);
}

TEST_P(ModifierBit, ComesFromItsCarbonBit) {
    EXPECT_EQ(ModifierFlags::fromCarbon(GetParam().carbon), ModifierFlags(GetParam().flag));
}

TEST_P(ModifierBit, HasItsSign) {
    EXPECT_EQ(ModifierFlags(GetParam().flag).ks_symbolicRepresentation(), GetParam().sign);
}

INSTANTIATE_TEST_SUITE_P(Each, ModifierBit, ::testing::ValuesIn(bits),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(ModifierCombination, IsConvertedBitByBit) {
    std::uint32_t flags = 0;
    std::int64_t carbon = 0;
    eachBit(GetParam(), [&](const Bit& bit) {
        flags |= bit.flag;
        carbon |= bit.carbon;
    });
    EXPECT_EQ(ModifierFlags(flags).carbon(), carbon);
    EXPECT_EQ(ModifierFlags::fromCarbon(carbon).rawValue(), flags);
    EXPECT_EQ(normalizedCarbonModifiers(carbon), carbon);
}

TEST_P(ModifierCombination, IsShownInOrderWithoutSeparators) {
    ModifierFlags flags;
    QString signs;
    eachBit(GetParam(), [&](const Bit& bit) {
        flags = flags | ModifierFlags(bit.flag);
        signs += bit.sign;
    });
    EXPECT_EQ(flags.ks_symbolicRepresentation(), signs);
}

INSTANTIATE_TEST_SUITE_P(All, ModifierCombination, ::testing::Range(0U, 32U));

TEST(ModifierFlags, NamesHaveTheirValues) {
    EXPECT_EQ(ModifierFlags(ModifierFlags::capsLock).rawValue(), 0x10000U);
    EXPECT_EQ(ModifierFlags(ModifierFlags::shift).rawValue(), 0x20000U);
    EXPECT_EQ(ModifierFlags(ModifierFlags::control).rawValue(), 0x40000U);
    EXPECT_EQ(ModifierFlags(ModifierFlags::option).rawValue(), 0x80000U);
    EXPECT_EQ(ModifierFlags(ModifierFlags::command).rawValue(), 0x100000U);
    EXPECT_EQ(ModifierFlags(ModifierFlags::function).rawValue(), 0x800000U);
    EXPECT_EQ(ModifierFlags().rawValue(), 0U);
}

TEST(ModifierFlags, CarbonNamesHaveTheirValues) {
    EXPECT_EQ(snapvane::CarbonModifier::command, 0x100U);
    EXPECT_EQ(snapvane::CarbonModifier::shift, 0x200U);
    EXPECT_EQ(snapvane::CarbonModifier::option, 0x800U);
    EXPECT_EQ(snapvane::CarbonModifier::control, 0x1000U);
    EXPECT_EQ(snapvane::CarbonModifier::function, 0x20000U);
}

TEST(ModifierFlags, OtherFlagsAreDropped) {
    for (unsigned bit = 0; bit < 32; ++bit) {
        const std::uint32_t flag = 1U << bit;
        if ((flag & allFlags) == 0) {
            EXPECT_EQ(ModifierFlags(flag).carbon(), 0) << bit;
            EXPECT_EQ(ModifierFlags(flag).ks_symbolicRepresentation(), QString()) << bit;
        }
    }
    EXPECT_EQ(ModifierFlags(~0U).carbon(), allCarbon);
}

TEST(ModifierFlags, OtherCarbonBitsAreDropped) {
    for (unsigned bit = 0; bit < 64; ++bit) {
        const auto mask = static_cast<std::int64_t>(1ULL << bit);
        if ((mask & allCarbon) == 0) {
            EXPECT_EQ(ModifierFlags::fromCarbon(mask), ModifierFlags()) << bit;
            EXPECT_EQ(normalizedCarbonModifiers(mask), 0) << bit;
        }
    }
    EXPECT_EQ(ModifierFlags::fromCarbon(-1).rawValue(), allFlags);
    EXPECT_EQ(normalizedCarbonModifiers(-1), allCarbon);
}

TEST(ModifierFlags, CanBeTestedAndTaken) {
    const ModifierFlags flags = ModifierFlags::control | ModifierFlags::function;
    EXPECT_TRUE(flags.contains(ModifierFlags::control));
    EXPECT_FALSE(flags.contains(ModifierFlags::shift));
    EXPECT_EQ(flags.without(ModifierFlags::function), ModifierFlags::control);
    EXPECT_EQ(flags.without(ModifierFlags::shift), flags);
}

} // namespace KeyboardShortcuts
