#include "platform/x11/ModifierMasks.h"

#include "platform/HotKeys.h"

#include <gmock/gmock.h>

#include <set>
#include <xcb/xproto.h>

namespace snapvane::x11 {

namespace {

using ::testing::UnorderedElementsAre;

constexpr ModifierMasks usual{.option = XCB_MOD_MASK_1,
                              .command = XCB_MOD_MASK_4,
                              .numLock = XCB_MOD_MASK_2,
                              .scrollLock = 0};

TEST(ModifierMasks, AreTheServersBitsOfEachModifier) {
    EXPECT_EQ(usual.fromCarbon(0), 0);
    EXPECT_EQ(usual.fromCarbon(CarbonModifier::shift), XCB_MOD_MASK_SHIFT);
    EXPECT_EQ(usual.fromCarbon(CarbonModifier::control), XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(usual.fromCarbon(CarbonModifier::option), XCB_MOD_MASK_1);
    EXPECT_EQ(usual.fromCarbon(CarbonModifier::command), XCB_MOD_MASK_4);
    EXPECT_EQ(usual.fromCarbon(CarbonModifier::control | CarbonModifier::command),
              XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4);
}

TEST(ModifierMasks, LackWhatTheKeyboardLacks) {
    EXPECT_EQ(usual.fromCarbon(CarbonModifier::function), std::nullopt);
    const ModifierMasks bare;
    EXPECT_EQ(bare.fromCarbon(CarbonModifier::option), std::nullopt);
    EXPECT_EQ(bare.fromCarbon(CarbonModifier::command | CarbonModifier::shift), std::nullopt);
    EXPECT_EQ(bare.fromCarbon(CarbonModifier::shift), XCB_MOD_MASK_SHIFT);
}

TEST(ModifierMasks, ComeBackFromTheStateOfAnEvent) {
    for (std::uint32_t bits = 0; bits < 16; ++bits) {
        const std::uint32_t carbon = ((bits & 1) != 0 ? CarbonModifier::shift : 0) |
                                     ((bits & 2) != 0 ? CarbonModifier::control : 0) |
                                     ((bits & 4) != 0 ? CarbonModifier::option : 0) |
                                     ((bits & 8) != 0 ? CarbonModifier::command : 0);
        const std::uint32_t state = usual.fromCarbon(carbon).value_or(0);
        EXPECT_EQ(usual.toCarbon(state), carbon);
        // Locks, pointer buttons and the layout's number stand in the same word.
        EXPECT_EQ(usual.toCarbon(state | usual.locks() | 0x7f00), carbon);
    }
}

TEST(ModifierMasks, CombineTheLocksThatThereAre) {
    EXPECT_THAT(ModifierMasks().lockCombinations(), UnorderedElementsAre(0, XCB_MOD_MASK_LOCK));
    EXPECT_THAT(usual.lockCombinations(), UnorderedElementsAre(0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                               XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
    const ModifierMasks all{.option = XCB_MOD_MASK_1,
                            .command = XCB_MOD_MASK_4,
                            .numLock = XCB_MOD_MASK_2,
                            .scrollLock = XCB_MOD_MASK_5};
    const auto combinations = all.lockCombinations();
    EXPECT_EQ(combinations.size(), 8U);
    EXPECT_EQ(std::set(combinations.begin(), combinations.end()).size(), 8U);
}

} // namespace

} // namespace snapvane::x11
