#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

using NamedShortcutsChanges = NamedShortcutsFixture;

} // namespace

TEST_F(NamedShortcutsChanges, MoveTheHotKey) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.setShortcut(shortcutOf(controlShiftP), name);
    EXPECT_FALSE(isRegistered(commandA));
    EXPECT_TRUE(isRegistered(controlShiftP));
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    tap(controlShiftP);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsChanges, ClearingUnregisters) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.setShortcut(std::nullopt, name);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsChanges, ToTheSameShortcutKeepItRegistered) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.setShortcut(shortcutOf(commandA), name);
    EXPECT_THAT(m_system.registered, SizeIs(1));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsChanges, OneHotKeyServesTwoNames) {
    const Name first = withShortcut("first", commandA);
    const Name second = withShortcut("second", commandA);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.onKeyUp(second, note("second"));
    EXPECT_EQ(m_system.registrations, 1);
    tap(commandA);
    EXPECT_THAT(m_journal, UnorderedElementsAre("first", "second"));
}

TEST_F(NamedShortcutsChanges, ClearingOneNameLeavesTheHotKeyToTheOther) {
    const Name first = withShortcut("first", commandA);
    const Name second = withShortcut("second", commandA);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.onKeyUp(second, note("second"));
    m_shortcuts.setShortcut(std::nullopt, first);
    EXPECT_EQ(m_system.registrations, 1);
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("second"));
    m_shortcuts.setShortcut(std::nullopt, second);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsChanges, NamesWithoutHandlersNeedNoHotKey) {
    const Name first = withShortcut("first", commandA);
    withShortcut("second", commandA);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.setShortcut(std::nullopt, first);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsChanges, DisabledNamesNeedNoHotKey) {
    const Name first = withShortcut("first", commandA);
    const Name second = withShortcut("second", commandA);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.onKeyUp(second, note("second"));
    m_shortcuts.disable({second});
    m_shortcuts.setShortcut(std::nullopt, first);
    EXPECT_THAT(m_system.registered, IsEmpty());
}

/// Whatever is still registered, what counts is what is stored at that moment.
TEST_F(NamedShortcutsChanges, CountAtOnceEvenBehindTheModulesBack) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    store("x", R"({"carbonKeyCode":35,"carbonModifiers":4608})");
    ASSERT_TRUE(isRegistered(commandA));
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(NamedShortcutsChanges, BetweenPressAndReleaseTheReleaseIsNobodys) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_system.press(commandA);
    m_shortcuts.setShortcut(shortcutOf(controlShiftP), name);
    m_system.release(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
}

TEST_F(NamedShortcutsChanges, OfADisabledNameRegisterNothing) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.disable({name});
    m_shortcuts.setShortcut(shortcutOf(controlShiftP), name);
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_shortcuts.enable({name});
    EXPECT_TRUE(isRegistered(controlShiftP));
    EXPECT_FALSE(isRegistered(commandA));
}

} // namespace KeyboardShortcuts
