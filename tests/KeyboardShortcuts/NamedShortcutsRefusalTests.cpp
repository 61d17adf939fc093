#include "NamedShortcutsFixture.h"
#include "selection/LogCapture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Remembers how each registration is told of its loss.
class LateLosses : public snapvane::null::NullHotKeys {
public:
    std::unique_ptr<snapvane::HotKeyRegistration>
    registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                   snapvane::HotKeyIdentifier identifier, std::function<void()> lost) override {
        losses.push_back(lost);
        return NullHotKeys::registerHotKey(keyCode, modifiers, identifier, std::move(lost));
    }

    std::vector<std::function<void()>> losses;
};

class RefusedShortcut : public NamedShortcutsFixture {
protected:
    snapvane::testing::LogCapture m_log;
    Name m_name = withShortcut("x", commandA);
};

} // namespace

TEST_F(RefusedShortcut, IsTriedAgainOnTheNextOccasion) {
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.onKeyUp(m_name, note("up"));
    EXPECT_THAT(m_system.registered, IsEmpty());
    m_system.heldElsewhere.clear();
    m_shortcuts.enable({m_name});
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(RefusedShortcut, StaysStored) {
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.onKeyUp(m_name, note("up"));
    EXPECT_EQ(m_shortcuts.getShortcut(m_name), shortcutOf(commandA));
}

TEST_F(RefusedShortcut, IsLoggedOnce) {
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.onKeyUp(m_name, note("up"));
    for (int round = 0; round < 3; ++round) {
        m_shortcuts.disable({m_name});
        m_shortcuts.enable({m_name});
    }
    EXPECT_THAT(m_log.errors(),
                ElementsAre(HasSubstr(R"({"carbonKeyCode":0,"carbonModifiers":256})")));
    EXPECT_EQ(m_log.lines().at(0).category, "KeyboardShortcuts");
}

TEST_F(RefusedShortcut, IsLoggedAgainOnceItHadBeenRegistered) {
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_system.heldElsewhere.clear();
    m_shortcuts.enable({m_name});
    m_shortcuts.disable({m_name});
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.enable({m_name});
    EXPECT_THAT(m_log.errors(), SizeIs(2));
}

TEST_F(RefusedShortcut, UsesUpAnId) {
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_system.heldElsewhere.clear();
    m_shortcuts.enable({m_name});
    EXPECT_EQ(m_system.registered.at(commandA).id, 2U);
}

TEST_F(RefusedShortcut, OnResumeIsGivenUpAndTriedAgainLater) {
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_shortcuts.setPaused(true);
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.setPaused(false);
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_THAT(m_log.errors(), SizeIs(1));
    m_system.heldElsewhere.clear();
    m_shortcuts.enable({m_name});
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(RefusedShortcut, OnResumeLeavesOthersAlone) {
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_shortcuts.onKeyUp(withShortcut("y", controlShiftP), note("other"));
    m_shortcuts.setPaused(true);
    m_system.heldElsewhere.insert(commandA);
    m_shortcuts.setPaused(false);
    tap(controlShiftP);
    EXPECT_THAT(m_journal, ElementsAre("other"));
}

TEST_F(RefusedShortcut, TakenBackByTheSystemIsGivenUp) {
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_system.take(commandA);
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_THAT(m_log.errors(), SizeIs(1));
    m_system.heldElsewhere.clear();
    m_shortcuts.enable({m_name});
    tap(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

/// Word of it may come late, when another registration serves the shortcut.
TEST_F(RefusedShortcut, LossOfAnOldRegistrationLeavesTheNewOneAlone) {
    LateLosses system;
    HotKeyCenter center(system);
    NamedShortcuts shortcuts(m_defaults, center);
    shortcuts.onKeyUp(m_name, note("up"));
    shortcuts.disable({m_name});
    shortcuts.enable({m_name});
    ASSERT_EQ(system.losses.size(), 2U);
    system.losses[0]();
    EXPECT_THAT(m_log.errors(), IsEmpty());
    system.press(commandA);
    system.release(commandA);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

TEST_F(RefusedShortcut, MayBeReplacedAfterwards) {
    m_shortcuts.onKeyUp(m_name, note("up"));
    m_system.take(commandA);
    m_shortcuts.setShortcut(shortcutOf(controlShiftP), m_name);
    tap(controlShiftP);
    EXPECT_THAT(m_journal, ElementsAre("up"));
}

} // namespace KeyboardShortcuts
