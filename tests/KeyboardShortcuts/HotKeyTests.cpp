#include "HotKeyFixture.h"

#include <QCoreApplication>

#include <thread>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using HotKeyTest = HotKeyFixture;

} // namespace

TEST_F(HotKeyTest, KeepsItsShortcut) {
    const auto hotKey = makeHotKey(35, 0x1200);
    EXPECT_EQ(hotKey->carbonKeyCode(), 35);
    EXPECT_EQ(hotKey->carbonModifiers(), 0x1200);
    EXPECT_FALSE(hotKey->isRegistered());
}

TEST_F(HotKeyTest, GivesItsRegistrationBackWhenItGoes) {
    auto hotKey = registered(35, 0x1200);
    const auto pressed = hotKeyEvent(Kind::HotKeyPressed, *hotKey);
    hotKey.reset();
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_EQ(handle(pressed), notHandled);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyTest, IsNotResumedOnceItIsGone) {
    auto hotKey = registered(35, 0x1200);
    m_center.setEnabled(false);
    hotKey.reset();
    m_center.setEnabled(true);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(HotKeyTest, CenterDoesNotKeepIt) {
    const std::weak_ptr<HotKey> weak = registered(35, 0x1200);
    EXPECT_TRUE(weak.expired());
}

TEST_F(HotKeyTest, DroppedOnAnotherThreadItEndsOnTheMainThread) {
    auto hotKey = registered(35, 0x1200);
    const auto pressed = hotKeyEvent(Kind::HotKeyPressed, *hotKey);
    std::thread([&hotKey] { hotKey.reset(); }).join();
    EXPECT_THAT(m_system.registered, SizeIs(1));
    // It answers no more from that moment on.
    EXPECT_EQ(handle(pressed), notHandled);
    QCoreApplication::processEvents();
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyTest, UnregisteredOneMayGoOnAnotherThread) {
    auto hotKey = makeHotKey(35, 0x1200);
    std::thread([&hotKey] { hotKey.reset(); }).join();
    QCoreApplication::processEvents();
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(HotKeyTest, MayOutliveTheCenter) {
    snapvane::null::NullHotKeys system;
    auto center = std::make_unique<HotKeyCenter>(system);
    auto hotKey = std::make_shared<HotKey>(
        *center, 35, 0x1200, center->nextHotKeyId(), [] {}, [] {});
    ASSERT_TRUE(center->register_(hotKey));
    center.reset();
    EXPECT_THAT(system.registered, IsEmpty());
    EXPECT_FALSE(hotKey->isRegistered());
    hotKey.reset();
    EXPECT_THAT(system.registered, IsEmpty());
}

TEST_F(HotKeyTest, MayGoInItsOwnCallback) {
    std::shared_ptr<HotKey> hotKey;
    hotKey = std::make_shared<HotKey>(
        m_center, 35, 0x1200, m_center.nextHotKeyId(),
        [this, &hotKey] {
            hotKey.reset();
            m_journal.emplace_back("after");
        },
        [] {});
    ASSERT_TRUE(m_center.register_(hotKey));
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("after"));
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(HotKeyTest, HearsOfARegistrationThatTheSystemTakesBack) {
    const auto hotKey = registered(35, 0x1200);
    m_system.take({35, 0x1200});
    EXPECT_FALSE(hotKey->isRegistered());
    EXPECT_THAT(m_journal, ElementsAre("key failed"));
}

TEST_F(HotKeyTest, MayGoWhenTheSystemTakesItBack) {
    auto hotKey = registered(35, 0x1200);
    hotKey->onRegistrationFailed = [&hotKey] { hotKey.reset(); };
    m_system.take({35, 0x1200});
    EXPECT_EQ(hotKey, nullptr);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(HotKeyTest, NeedNotListenForFailures) {
    const auto hotKey = registered(35, 0x1200);
    hotKey->onRegistrationFailed = nullptr;
    m_system.take({35, 0x1200});
    EXPECT_FALSE(hotKey->isRegistered());
    m_center.setEnabled(false);
    m_center.setEnabled(true);
    EXPECT_FALSE(hotKey->isRegistered());
}

} // namespace KeyboardShortcuts
