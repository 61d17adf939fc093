#include "HotKeyFixture.h"

#include <thread>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HotKeyEvents : public HotKeyFixture {
protected:
    std::shared_ptr<HotKey> m_hotKey = registered(35, 0x1200);
    snapvane::HotKeyEvent m_pressed = hotKeyEvent(Kind::HotKeyPressed, *m_hotKey);
};

} // namespace

TEST_F(HotKeyEvents, PressAndReleaseReachTheHotKey) {
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_EQ(m_system.release({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down", "key up"));
}

TEST_F(HotKeyEvents, ReachTheHotKeyOfTheirId) {
    const auto other = registered(0, 0x100, "other");
    EXPECT_EQ(handle(hotKeyEvent(Kind::HotKeyReleased, *other)), handled);
    EXPECT_THAT(m_journal, ElementsAre("other up"));
}

TEST_F(HotKeyEvents, OfAForeignSignatureAreDeclined) {
    m_pressed.identifier.signature = 0x534b5353;
    EXPECT_EQ(handle(m_pressed), notHandled);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyEvents, OfAnUnknownIdAreDeclined) {
    for (const std::uint32_t id : {0U, 2U, 0xffffffffU}) {
        m_pressed.identifier.id = id;
        EXPECT_EQ(handle(m_pressed), notHandled) << id;
    }
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyEvents, ThatCannotBeReadReturnTheError) {
    m_pressed.identifierStatus = -9870;
    EXPECT_EQ(handle(m_pressed), -9870);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyEvents, OfOtherKindsAreDeclined) {
    for (const std::uint32_t kind : {0U, 2U, 4U, 7U, 100U}) {
        m_pressed.type.kind = static_cast<Kind>(kind);
        EXPECT_EQ(handle(m_pressed), notHandled) << kind;
    }
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyEvents, OfOtherClassesAreDeclined) {
    m_pressed.type.eventClass = 0x6d6f7573;
    EXPECT_EQ(handle(m_pressed), notHandled);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyEvents, WithoutACenterAreDeclined) {
    EXPECT_EQ(HotKeyCenter::handleEvent(nullptr, m_pressed), notHandled);
}

TEST_F(HotKeyEvents, OnAnotherThreadAreDeclined) {
    std::int32_t pressedStatus = handled;
    std::int32_t rawStatus = handled;
    m_center.setMenuOpen(true);
    std::thread([&] {
        pressedStatus = handle(m_pressed);
        rawStatus = handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200));
    }).join();
    EXPECT_EQ(pressedStatus, notHandled);
    EXPECT_EQ(rawStatus, notHandled);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(HotKeyEvents, AfterTheCenterAreDeclined) {
    snapvane::null::NullHotKeys system;
    {
        HotKeyCenter center(system);
        const auto hotKey = std::make_shared<HotKey>(
            center, 35, 0x1200, center.nextHotKeyId(), [] {}, [] {});
        ASSERT_TRUE(center.register_(hotKey));
    }
    ASSERT_TRUE(system.handler);
    EXPECT_EQ(system.handler(m_pressed), notHandled);
}

} // namespace KeyboardShortcuts
