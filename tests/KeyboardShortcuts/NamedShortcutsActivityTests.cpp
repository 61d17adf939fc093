#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using NamedShortcutsActivity = NamedShortcutsFixture;

} // namespace

TEST_F(NamedShortcutsActivity, NamesBeginEnabled) {
    EXPECT_TRUE(m_shortcuts.isEnabled());
    EXPECT_FALSE(m_shortcuts.isPaused());
    EXPECT_TRUE(m_shortcuts.isEnabled(named("never met")));
}

TEST_F(NamedShortcutsActivity, DisabledNamesAreSilentAndFree) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.disable({name});
    EXPECT_FALSE(m_shortcuts.isEnabled(name));
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_shortcuts.enable({name});
    EXPECT_TRUE(m_shortcuts.isEnabled(name));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsActivity, SeveralNamesAtOnce) {
    const Name first = withShortcut("first", commandA);
    const Name second = withShortcut("second", controlShiftP);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.onKeyUp(second, note("second"));
    m_shortcuts.disable({first, second});
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_shortcuts.enable({first, second});
    EXPECT_THAT(m_system.registered, SizeIs(2));
}

TEST_F(NamedShortcutsActivity, DisablingTwiceIsUndoneByEnablingOnce) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.disable({name});
    m_shortcuts.disable({name});
    m_shortcuts.enable({name});
    EXPECT_TRUE(isRegistered(commandA));
    m_shortcuts.enable({name});
    EXPECT_THAT(m_system.registered, SizeIs(1));
}

TEST_F(NamedShortcutsActivity, AnotherNamesHotKeyStays) {
    const Name first = withShortcut("first", commandA);
    const Name second = withShortcut("second", commandA);
    m_shortcuts.onKeyUp(first, note("first"));
    m_shortcuts.onKeyUp(second, note("second"));
    m_shortcuts.disable({first});
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("second"));
}

TEST_F(NamedShortcutsActivity, HandlersMayComeWhileDisabled) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.disable({name});
    m_shortcuts.onKeyUp(name, note("up"));
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_shortcuts.enable({name});
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsActivity, EnablingWithoutHandlersRegistersNothing) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.disable({name});
    m_shortcuts.enable({name});
    EXPECT_THAT(m_system.registered, IsEmpty());
}

TEST_F(NamedShortcutsActivity, ModuleSwitchPausesEverything) {
    m_shortcuts.onKeyUp(withShortcut("x", commandA), note("up"));
    const auto before = m_system.registered;
    m_shortcuts.setEnabled(false);
    EXPECT_FALSE(m_shortcuts.isEnabled());
    EXPECT_THAT(m_system.registered, IsEmpty());
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    m_shortcuts.setEnabled(true);
    EXPECT_EQ(m_system.registered, before);
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsActivity, PausePausesEverything) {
    m_shortcuts.onKeyUp(withShortcut("x", commandA), note("up"));
    const auto before = m_system.registered;
    m_shortcuts.setPaused(true);
    EXPECT_TRUE(m_shortcuts.isPaused());
    EXPECT_THAT(m_system.registered, IsEmpty());
    tap(commandA);
    EXPECT_THAT(m_journal, IsEmpty());
    m_shortcuts.setPaused(false);
    EXPECT_EQ(m_system.registered, before);
}

TEST_F(NamedShortcutsActivity, BothSwitchesCount) {
    m_shortcuts.onKeyUp(withShortcut("x", commandA), note("up"));
    m_shortcuts.setPaused(true);
    m_shortcuts.setEnabled(false);
    m_shortcuts.setPaused(false);
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_shortcuts.setEnabled(true);
    EXPECT_TRUE(isRegistered(commandA));
    EXPECT_EQ(m_system.registrations, 2);
}

/// A press that was on its way when the pause began.
TEST_F(NamedShortcutsActivity, EventsThatStillArriveWhilePausedRunNothing) {
    m_shortcuts.onKeyUp(withShortcut("x", commandA), note("up"));
    snapvane::HotKeyEvent event;
    event.type.kind = snapvane::HotKeyEventKind::HotKeyReleased;
    event.identifier = m_system.registered.at(commandA);
    m_shortcuts.setPaused(true);
    m_system.handler(event);
    EXPECT_THAT(m_journal, IsEmpty());
    m_shortcuts.setPaused(false);
    m_system.handler(event);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsActivity, ChangesWhilePausedHoldAfterwards) {
    const Name name = withShortcut("x", commandA);
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.setPaused(true);
    m_shortcuts.setShortcut(shortcutOf(controlShiftP), name);
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_shortcuts.setPaused(false);
    EXPECT_THAT(m_system.registered, SizeIs(1));
    tap(controlShiftP);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(NamedShortcutsActivity, HandlersRunWhileAMenuIsOpen) {
    m_shortcuts.onKeyUp(withShortcut("x", commandA), note("up"));
    m_center.setMenuOpen(true);
    EXPECT_FALSE(isRegistered(commandA));
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

} // namespace KeyboardShortcuts
