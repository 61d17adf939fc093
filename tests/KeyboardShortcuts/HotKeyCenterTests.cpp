#include "HotKeyFixture.h"

#include <set>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

using HotKeyCenterTest = HotKeyFixture;
using HotKeyCenterDeathTest = HotKeyFixture;

} // namespace

TEST_F(HotKeyCenterTest, BeginsEnabledWithNothingRegistered) {
    EXPECT_TRUE(m_center.isEnabled());
    EXPECT_FALSE(m_center.isMenuOpen());
    EXPECT_EQ(m_center.mode(), HotKeyCenter::Mode::normal);
    EXPECT_FALSE(m_system.handler);
    EXPECT_THAT(m_system.eventKinds, IsEmpty());
}

TEST_F(HotKeyCenterTest, ModesAndEventTypesHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(HotKeyCenter::Mode::disabled), 0);
    EXPECT_EQ(static_cast<int>(HotKeyCenter::Mode::normal), 1);
    EXPECT_EQ(static_cast<int>(HotKeyCenter::Mode::menuOpen), 2);
    EXPECT_EQ(HotKeyCenter::signature, 0x53534b53U);
    EXPECT_EQ(snapvane::keyboardEventClass,
              std::uint32_t{'k'} << 24U | 'e' << 16U | 'y' << 8U | 'b');
    const auto number = [](const snapvane::HotKeyEventType& type) {
        EXPECT_EQ(type.eventClass, snapvane::keyboardEventClass);
        return static_cast<int>(type.kind);
    };
    EXPECT_EQ(number(HotKeyCenter::hotKeyEventTypes[0]), 5);
    EXPECT_EQ(number(HotKeyCenter::hotKeyEventTypes[1]), 6);
    EXPECT_EQ(number(HotKeyCenter::rawKeyEventTypes[0]), 1);
    EXPECT_EQ(number(HotKeyCenter::rawKeyEventTypes[1]), 3);
}

TEST_F(HotKeyCenterTest, FirstIdIsOne) {
    const auto hotKey = registered(35, 0x1200);
    EXPECT_EQ(hotKey->id(), 1);
    EXPECT_TRUE(hotKey->isRegistered());
    const snapvane::HotKeyIdentifier expected{0x53534b53, 1};
    EXPECT_EQ(m_system.registered.at({35, 0x1200}), expected);
}

TEST_F(HotKeyCenterTest, IdsAreNeverUsedAgain) {
    std::set<std::int64_t> ids;
    for (int round = 0; round < 5; ++round) {
        ids.insert(registered(35, 0x1200)->id());
    }
    EXPECT_THAT(ids, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(HotKeyCenterTest, ARefusalChangesNothing) {
    m_system.heldElsewhere.insert({35, 0x1200});
    const auto hotKey = makeHotKey(35, 0x1200);
    EXPECT_FALSE(m_center.register_(hotKey));
    EXPECT_FALSE(hotKey->isRegistered());
    EXPECT_FALSE(m_system.handler);
    EXPECT_THAT(m_system.eventKinds, IsEmpty());
    EXPECT_THAT(m_journal, IsEmpty());
    // It is not among those that are resumed either.
    m_system.heldElsewhere.clear();
    const auto other = registered(0, 0x100);
    EXPECT_THAT(m_system.registered, SizeIs(1));
}

TEST_F(HotKeyCenterTest, WhatWasRefusedMayBeTriedAgain) {
    m_system.heldElsewhere.insert({35, 0x1200});
    const auto hotKey = makeHotKey(35, 0x1200);
    EXPECT_FALSE(m_center.register_(hotKey));
    m_system.heldElsewhere.clear();
    EXPECT_TRUE(m_center.register_(hotKey));
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down"));
}

TEST_F(HotKeyCenterTest, ListensToHotKeysOnceThereIsOne) {
    const auto first = registered(35, 0x1200);
    const auto second = registered(0, 0x100);
    EXPECT_THAT(m_system.eventKinds,
                UnorderedElementsAre(Kind::HotKeyPressed, Kind::HotKeyReleased));
}

TEST_F(HotKeyCenterTest, StaysRegisteredWithoutAnEventHandler) {
    m_system.canInstallHandler = false;
    const auto hotKey = registered(35, 0x1200);
    EXPECT_TRUE(hotKey->isRegistered());
    EXPECT_THAT(m_system.eventKinds, IsEmpty());
    // No mode is applied where nothing would be heard of.
    m_center.setEnabled(false);
    EXPECT_EQ(m_center.mode(), HotKeyCenter::Mode::disabled);
    EXPECT_TRUE(hotKey->isRegistered());
}

TEST_F(HotKeyCenterTest, TriesTheEventHandlerAgainWithTheNextHotKey) {
    m_system.canInstallHandler = false;
    const auto first = registered(35, 0x1200, "first");
    m_system.canInstallHandler = true;
    const auto second = registered(0, 0x100, "second");
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("first down"));
}

TEST_F(HotKeyCenterTest, LargestNumbersAreRegistered) {
    const auto hotKey = registered(0xffffffff, 0xffffffff);
    EXPECT_TRUE(m_system.registered.contains({0xffffffff, 0xffffffff}));
}

TEST_F(HotKeyCenterDeathTest, NumbersBeyond32BitsAreProgramErrors) {
    const char* place = "32 bits \\(.*KeyboardShortcuts/HotKeyCenter\\.cpp:";
    EXPECT_DEATH(m_center.register_(makeHotKey(-1, 0)), place);
    EXPECT_DEATH(m_center.register_(makeHotKey(0x100000000, 0)), place);
    EXPECT_DEATH(m_center.register_(makeHotKey(0, -1)), place);
    EXPECT_DEATH(m_center.register_(makeHotKey(0, 0x100000000)), place);
    const auto badId = [this](std::int64_t id) {
        return std::make_shared<HotKey>(
            m_center, 0, 0, id, [] {}, [] {});
    };
    EXPECT_DEATH(m_center.register_(badId(-1)), place);
    EXPECT_DEATH(m_center.register_(badId(0x100000000)), place);
}

} // namespace KeyboardShortcuts
