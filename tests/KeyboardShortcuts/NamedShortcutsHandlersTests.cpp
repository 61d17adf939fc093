#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using NamedShortcutsHandlers = NamedShortcutsFixture;

} // namespace

TEST_F(NamedShortcutsHandlers, NothingIsRegisteredWithoutThem) {
    const Name name = withShortcut("x", commandA);
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(commandA));
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsHandlers, RegisterTheShortcut) {
    m_shortcuts.onKeyUp(withShortcut("x", commandA), note("up"));
    EXPECT_TRUE(isRegistered(commandA));
    const snapvane::HotKeyIdentifier first{0x53534b53, 1};
    EXPECT_EQ(m_system.registered.at(commandA), first);
}

TEST_F(NamedShortcutsHandlers, WaitForAShortcut) {
    m_shortcuts.onKeyUp(named("x"), note("up"));
    EXPECT_THAT(m_system.registered, IsEmpty());
    withShortcut("x", commandA);
    EXPECT_TRUE(isRegistered(commandA));
}

TEST_F(NamedShortcutsHandlers, OfKeyUpRunOnReleaseInOrder) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("first"));
    m_shortcuts.onKeyUp(name, note("second"));
    m_system.press(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    m_system.release(commandA);
    EXPECT_THAT(m_journal, ElementsAre("first", "second"));
}

TEST_F(NamedShortcutsHandlers, OfKeyDownRunOnPressInOrder) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyDown(name, note("first"));
    m_shortcuts.onKeyDown(name, note("second"));
    m_shortcuts.onKeyUp(name, note("up"));
    m_system.press(commandA);
    EXPECT_THAT(m_journal, ElementsAre("first", "second"));
    m_system.release(commandA);
    EXPECT_THAT(m_journal, ElementsAre("first", "second", "up"));
}

TEST_F(NamedShortcutsHandlers, OfOneNameShareAHotKey) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyDown(name, note("down"));
    m_shortcuts.onKeyUp(name, note("up"));
    EXPECT_THAT(m_system.registered, SizeIs(1));
    EXPECT_EQ(m_system.registrations, 1);
}

TEST_F(NamedShortcutsHandlers, SameFunctionMayBeAddedTwice) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.onKeyUp(name, note("up"));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up", "up"));
}

TEST_F(NamedShortcutsHandlers, RemovedTheyUnregister) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyDown(name, note("down"));
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.removeHandler(name);
    EXPECT_THAT(m_system.registered, IsEmpty());
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    // The shortcut itself stays.
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(commandA));
}

TEST_F(NamedShortcutsHandlers, RemovalLeavesTheHotKeyToOtherNames) {
    const Name first = withShortcut("first", commandA);
    const Name second = withShortcut("second", commandA);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.onKeyUp(second, note("second"));
    m_shortcuts.removeHandler(first);
    EXPECT_TRUE(isRegistered(commandA));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("second"));
}

TEST_F(NamedShortcutsHandlers, RemovalOfNoneIsNothing) {
    m_shortcuts.removeHandler(named("x"));
    m_shortcuts.removeAllHandlers();
    m_shortcuts.removeHandler(withShortcut("x", commandA));
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsHandlers, AllCanBeRemoved) {
    m_shortcuts.onKeyUp(withShortcut("first", commandA), note("first"));
    m_shortcuts.onKeyDown(withShortcut("second", controlShiftP), note("second"));
    m_shortcuts.removeAllHandlers();
    EXPECT_THAT(m_system.registered, IsEmpty());
    tap(commandA);
    tap(controlShiftP);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(NamedShortcutsHandlers, CanBeAddedAfterRemoval) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("old"));
    m_shortcuts.removeHandler(name);
    m_shortcuts.onKeyUp(name, note("new"));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("new"));
    EXPECT_EQ(m_system.registered.at(commandA).id, 2U);
}

TEST_F(NamedShortcutsHandlers, GoWithTheModule) {
    auto shortcuts = std::make_unique<NamedShortcuts>(m_defaults, m_center);
    shortcuts->onKeyUp(withShortcut("x", commandA), note("up"));
    EXPECT_TRUE(isRegistered(commandA));
    shortcuts.reset();
    EXPECT_FALSE(isRegistered(commandA));
}

} // namespace KeyboardShortcuts
