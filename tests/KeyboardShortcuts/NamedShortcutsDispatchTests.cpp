#include "Consumer.h"
#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class NamedShortcutsDispatch : public NamedShortcutsFixture {
protected:
    Name m_name = withShortcut("x", commandA);
};

} // namespace

TEST_F(NamedShortcutsDispatch, RunsNamesThenNamesStreamsThenShortcutsStreams) {
    const auto byShortcut = consume(m_shortcuts.events(shortcutOf(commandA)));
    byShortcut->onEvent = note("stream of shortcut");
    const auto byName = consume(m_shortcuts.events(m_name));
    byName->onEvent = note("stream of name");
    m_shortcuts.onKeyUp(m_name, note("first"));
    m_shortcuts.onKeyUp(m_name, note("second"));
    m_shortcuts.onKeyUp(withShortcut("y", commandA), note("other name"));
    m_system.release(commandA);
    ASSERT_EQ(m_journal.size(), 5U);
    EXPECT_THAT(std::vector(m_journal.begin(), m_journal.begin() + 3),
                UnorderedElementsAre("first", "second", "other name"));
    EXPECT_THAT(std::vector(m_journal.begin() + 3, m_journal.end()),
                ElementsAre("stream of name", "stream of shortcut"));
}

TEST_F(NamedShortcutsDispatch, KnowsDownFromUp) {
    m_shortcuts.onKeyDown(m_name, note("down"));
    m_shortcuts.onKeyUp(m_name, note("up"));
    tap(commandA);
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("down", "up", "down", "up"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayDisableItsName) {
    m_shortcuts.onKeyDown(m_name, [this] { m_shortcuts.disable({m_name}); });
    m_shortcuts.onKeyUp(m_name, note("up"));
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    EXPECT_FALSE(isRegistered(commandA));
    m_shortcuts.enable({m_name});
    m_system.release(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

/// What runs is not what is registered: the hot key must be free for its successor at once.
TEST_F(NamedShortcutsDispatch, HandlerMayDisableAndEnableItsName) {
    m_shortcuts.onKeyUp(m_name, [this] {
        m_shortcuts.disable({m_name});
        m_shortcuts.enable({m_name});
        m_journal.emplace_back("up");
    });
    tap(commandA);
    EXPECT_TRUE(isRegistered(commandA));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up", "up"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayStoreTheSameShortcutAgain) {
    m_shortcuts.onKeyDown(m_name, [this] {
        m_shortcuts.setShortcut(shortcutOf(commandA), m_name);
        m_journal.emplace_back("down");
    });
    tap(commandA);
    EXPECT_TRUE(isRegistered(commandA));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("down", "down"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayCloseTheMenuAndReplaceTheHotKey) {
    m_shortcuts.onKeyUp(m_name, [this] {
        m_shortcuts.disable({m_name});
        m_center.setMenuOpen(false);
        m_shortcuts.enable({m_name});
        m_journal.emplace_back("up");
    });
    m_center.setMenuOpen(true);
    tap(commandA);
    EXPECT_TRUE(isRegistered(commandA));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up", "up"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayRemoveItself) {
    m_shortcuts.onKeyUp(m_name, [this] {
        m_shortcuts.removeHandler(m_name);
        m_journal.emplace_back("once");
    });
    tap(commandA);
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("once"));
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsDispatch, HandlerMayRemoveAll) {
    m_shortcuts.onKeyUp(withShortcut("y", commandA), [this] {
        m_shortcuts.removeAllHandlers();
        m_journal.emplace_back("run");
    });
    m_shortcuts.onKeyUp(m_name, [this] {
        m_shortcuts.removeAllHandlers();
        m_journal.emplace_back("run");
    });
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("run"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayAddAnother) {
    m_shortcuts.onKeyUp(m_name, [this] {
        m_journal.emplace_back("first");
        m_shortcuts.onKeyUp(m_name, note("added"));
    });
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("first"));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("first", "first", "added"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayChangeTheShortcut) {
    m_shortcuts.onKeyUp(m_name, [this] {
        m_journal.emplace_back("up");
        m_shortcuts.setShortcut(shortcutOf(controlShiftP), m_name);
    });
    tap(commandA);
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
    EXPECT_TRUE(isRegistered(controlShiftP));
}

/// Whichever of the two comes first takes it from the other.
TEST_F(NamedShortcutsDispatch, HandlerMayTakeTheShortcutFromAnotherName) {
    const Name other = withShortcut("y", commandA);
    m_shortcuts.onKeyUp(m_name, [this, other] {
        m_journal.emplace_back("run");
        m_shortcuts.setShortcut(std::nullopt, other);
    });
    m_shortcuts.onKeyUp(other, [this] {
        m_journal.emplace_back("run");
        m_shortcuts.setShortcut(std::nullopt, m_name);
    });
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("run"));
}

TEST_F(NamedShortcutsDispatch, HandlerMayPauseTheModule) {
    m_shortcuts.onKeyDown(m_name, [this] { m_shortcuts.setPaused(true); });
    m_shortcuts.onKeyUp(m_name, note("up"));
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    m_shortcuts.setPaused(false);
    EXPECT_TRUE(isRegistered(commandA));
}

TEST_F(NamedShortcutsDispatch, HandlerMayClearTheShortcut) {
    m_shortcuts.onKeyDown(m_name, [this] { m_shortcuts.setShortcut(std::nullopt, m_name); });
    tap(commandA);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsDispatch, HandlerMayEndAStream) {
    const auto stream = consume(m_shortcuts.events(m_name));
    m_shortcuts.onKeyDown(m_name, [&stream] { stream->stream->end(); });
    m_system.press(commandA);
    EXPECT_EQ(stream->received, ".");
}

} // namespace KeyboardShortcuts
