#include "HotKeyFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

using Mode = HotKeyCenter::Mode;

class HotKeyModes : public HotKeyFixture {
protected:
    void expectHotKeysOnly() const {
        EXPECT_THAT(m_system.eventKinds,
                    UnorderedElementsAre(Kind::HotKeyPressed, Kind::HotKeyReleased));
    }
    void expectRawKeysOnly() const {
        EXPECT_THAT(m_system.eventKinds, UnorderedElementsAre(Kind::RawKeyDown, Kind::RawKeyUp));
    }
};

} // namespace

TEST_F(HotKeyModes, AreDerivedFromBothSwitches) {
    m_center.setMenuOpen(true);
    EXPECT_EQ(m_center.mode(), Mode::menuOpen);
    m_center.setEnabled(false);
    EXPECT_EQ(m_center.mode(), Mode::disabled);
    m_center.setMenuOpen(false);
    EXPECT_EQ(m_center.mode(), Mode::disabled);
    m_center.setMenuOpen(true);
    m_center.setEnabled(true);
    EXPECT_EQ(m_center.mode(), Mode::menuOpen);
    m_center.setMenuOpen(false);
    EXPECT_EQ(m_center.mode(), Mode::normal);
}

TEST_F(HotKeyModes, DisabledPausesEverything) {
    const auto first = registered(35, 0x1200);
    const auto second = registered(0, 0x100);
    m_center.setEnabled(false);
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_THAT(m_system.eventKinds, IsEmpty());
    EXPECT_EQ(m_system.press({35, 0x1200}), std::nullopt);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyModes, EnabledAgainTheIdsAreTheSame) {
    const auto first = registered(35, 0x1200);
    const auto second = registered(0, 0x100);
    const auto before = m_system.registered;
    m_center.setEnabled(false);
    m_center.setEnabled(true);
    EXPECT_EQ(m_system.registered, before);
    expectHotKeysOnly();
    EXPECT_EQ(m_system.press({0, 0x100}), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down"));
}

TEST_F(HotKeyModes, OpenMenusPauseHotKeysAndWatchKeys) {
    const auto hotKey = registered(35, 0x1200);
    const auto before = m_system.registered;
    m_center.setMenuOpen(true);
    EXPECT_THAT(m_system.registered, IsEmpty());
    expectRawKeysOnly();
    m_center.setMenuOpen(false);
    EXPECT_EQ(m_system.registered, before);
    expectHotKeysOnly();
}

TEST_F(HotKeyModes, EnablingReturnsToAnOpenMenu) {
    const auto hotKey = registered(35, 0x1200);
    m_center.setMenuOpen(true);
    m_center.setEnabled(false);
    EXPECT_THAT(m_system.eventKinds, IsEmpty());
    m_center.setEnabled(true);
    EXPECT_THAT(m_system.registered, IsEmpty());
    expectRawKeysOnly();
}

TEST_F(HotKeyModes, SayingTheSameAgainDoesNothing) {
    const auto hotKey = registered(35, 0x1200);
    m_center.setEnabled(true);
    m_center.setMenuOpen(false);
    EXPECT_EQ(m_system.registrations, 1);
    expectHotKeysOnly();
    m_center.setMenuOpen(true);
    m_center.setMenuOpen(true);
    expectRawKeysOnly();
}

TEST_F(HotKeyModes, HotKeyMadeWhileDisabledIsPausedAtOnce) {
    m_center.setEnabled(false);
    const auto hotKey = registered(35, 0x1200);
    EXPECT_EQ(m_system.registrations, 1);
    EXPECT_FALSE(hotKey->isRegistered());
    EXPECT_THAT(m_system.eventKinds, IsEmpty());
    m_center.setEnabled(true);
    EXPECT_TRUE(hotKey->isRegistered());
    expectHotKeysOnly();
}

TEST_F(HotKeyModes, HotKeyMadeWhileAMenuIsOpenWatchesKeys) {
    m_center.setMenuOpen(true);
    const auto hotKey = registered(35, 0x1200);
    EXPECT_FALSE(hotKey->isRegistered());
    expectRawKeysOnly();
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down"));
}

/// Even to find out that it is refused while the others are paused.
TEST_F(HotKeyModes, RefusalIsFoundOutWhileDisabled) {
    m_center.setEnabled(false);
    m_system.heldElsewhere.insert({35, 0x1200});
    EXPECT_FALSE(m_center.register_(makeHotKey(35, 0x1200)));
}

TEST_F(HotKeyModes, RefusalOnResumeIsReported) {
    const auto first = registered(35, 0x1200, "first");
    const auto second = registered(0, 0x100, "second");
    m_center.setMenuOpen(true);
    m_system.heldElsewhere.insert({35, 0x1200});
    m_center.setMenuOpen(false);
    EXPECT_FALSE(first->isRegistered());
    EXPECT_TRUE(second->isRegistered());
    EXPECT_THAT(m_journal, ElementsAre("first failed"));
}

TEST_F(HotKeyModes, RefusedOneMayGoWhileOthersAreResumed) {
    auto first = registered(35, 0x1200, "first");
    const auto second = registered(0, 0x100, "second");
    first->onRegistrationFailed = [&first] { first.reset(); };
    m_center.setEnabled(false);
    m_system.heldElsewhere.insert({35, 0x1200});
    m_center.setEnabled(true);
    EXPECT_EQ(first, nullptr);
    EXPECT_THAT(m_system.registered, SizeIs(1));
    EXPECT_TRUE(second->isRegistered());
}

} // namespace KeyboardShortcuts
