#include "HotKeyFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RawKeys : public HotKeyFixture {
protected:
    std::shared_ptr<HotKey> watched(std::int64_t keyCode, std::int64_t modifiers,
                                    const std::string& title = "key") {
        auto hotKey = registered(keyCode, modifiers, title);
        m_center.setMenuOpen(true);
        return hotKey;
    }
};

} // namespace

TEST_F(RawKeys, ReachTheHotKeyOfTheSameShortcut) {
    const auto hotKey = watched(35, 0x1200);
    const auto other = watched(35, 0x1000, "other");
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200)), handled);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyUp, 35, 0x1200)), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down", "key up"));
}

TEST_F(RawKeys, OfOtherShortcutsAreDeclined) {
    const auto hotKey = watched(35, 0x1200);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 34, 0x1200)), notHandled);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1000)), notHandled);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyUp, 35, 0x1300)), notHandled);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyUp, 35, 0)), notHandled);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(RawKeys, ModifiersAreNormalised) {
    const auto hotKey = watched(35, 0x1200);
    // Caps lock, num lock and others.
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200 | 0x400 | 0x10000)), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down"));
}

TEST_F(RawKeys, HotKeysModifiersAreNormalised) {
    const auto hotKey = watched(35, 0x1200 | 0x400);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200)), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down"));
}

TEST_F(RawKeys, FunctionOfMarkedKeysIsLeftOutOfTheComparison) {
    for (const Key key : Key::keysWithSynthesizedFunctionModifier()) {
        m_journal.clear();
        const auto hotKey = watched(key.rawValue(), 0x20000 | 0x1000);
        const auto code = static_cast<std::uint32_t>(key.rawValue());
        EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, code, 0x1000)), handled) << code;
        EXPECT_THAT(m_journal, ElementsAre("key down")) << code;
    }
}

TEST_F(RawKeys, FunctionOfOtherKeysCounts) {
    const auto hotKey = watched(35, 0x20000 | 0x1000);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1000)), notHandled);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x21000)), handled);
}

TEST_F(RawKeys, HeldKeyGoesDownOnce) {
    const auto hotKey = watched(35, 0x1200);
    EXPECT_EQ(m_system.press({35, 0x1200}), handled);
    EXPECT_EQ(m_system.press({35, 0x1200}, true), handled);
    EXPECT_EQ(m_system.press({35, 0x1200}, true), handled);
    EXPECT_EQ(m_system.release({35, 0x1200}), handled);
    EXPECT_THAT(m_journal, ElementsAre("key down", "key up"));
}

TEST_F(RawKeys, WithoutAnOpenMenuAreDeclined) {
    const auto hotKey = registered(35, 0x1200);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200)), notHandled);
    m_center.setMenuOpen(true);
    m_center.setEnabled(false);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200)), notHandled);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(RawKeys, OfAHotKeyThatIsGoneAreDeclined) {
    auto hotKey = watched(35, 0x1200);
    hotKey.reset();
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200)), notHandled);
}

TEST_F(RawKeys, HotKeyMayGoInItsOwnCallback) {
    std::shared_ptr<HotKey> hotKey;
    hotKey = std::make_shared<HotKey>(
        m_center, 35, 0x1200, m_center.nextHotKeyId(), [&hotKey] { hotKey.reset(); }, [] {});
    ASSERT_TRUE(m_center.register_(hotKey));
    m_center.setMenuOpen(true);
    EXPECT_EQ(handle(rawKeyEvent(Kind::RawKeyDown, 35, 0x1200)), handled);
    EXPECT_EQ(hotKey, nullptr);
}

} // namespace KeyboardShortcuts
