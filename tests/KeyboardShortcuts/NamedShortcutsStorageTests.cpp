#include "NamedShortcutsFixture.h"

#include <QSettings>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class NamedShortcutsStorage : public NamedShortcutsFixture {
protected:
    static Name captureArea() {
        return Name(QStringLiteral("captureArea"),
                    Shortcut(Key::p, ModifierFlags::control | ModifierFlags::shift));
    }
    /// What another start of the program would find.
    std::optional<Shortcut> afterRestart(bool seeding) {
        snapvane::UserDefaults defaults(m_file.path());
        NamedShortcuts shortcuts(defaults, m_center);
        NamedShortcuts::install(&shortcuts);
        const Name name = seeding ? captureArea() : named("captureArea");
        NamedShortcuts::install(&m_shortcuts);
        return shortcuts.getShortcut(name);
    }
};

const QString defaultText = QStringLiteral(R"({"carbonKeyCode":35,"carbonModifiers":4608})");

} // namespace

TEST_F(NamedShortcutsStorage, KeyIsMadeOfTheName) {
    EXPECT_EQ(NamedShortcuts::userDefaultsKey(named("captureArea")),
              QStringLiteral("KeyboardShortcuts_captureArea"));
}

TEST_F(NamedShortcutsStorage, NamesAreEqualAndHashedByTheirText) {
    const Name seeded = captureArea();
    const Name plain = named("captureArea");
    EXPECT_EQ(seeded, plain);
    EXPECT_FALSE(seeded == named("capturearea"));
    EXPECT_EQ(std::hash<Name>()(seeded), std::hash<Name>()(plain));
    EXPECT_EQ(plain.initialShortcut(), std::nullopt);
    EXPECT_EQ(seeded.initialShortcut(), shortcutOf(controlShiftP));
}

TEST_F(NamedShortcutsStorage, DefaultIsStoredWithTheName) {
    const Name name = captureArea();
    EXPECT_EQ(stored("captureArea"), defaultText);
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(controlShiftP));
}

TEST_F(NamedShortcutsStorage, NameWithoutADefaultStoresNothing) {
    const Name plain(QStringLiteral("x"));
    const Name empty(QStringLiteral("y"), std::nullopt);
    EXPECT_FALSE(m_defaults.contains(keyOf("x")));
    EXPECT_FALSE(m_defaults.contains(keyOf("y")));
    EXPECT_EQ(m_shortcuts.getShortcut(plain), std::nullopt);
}

TEST_F(NamedShortcutsStorage, DefaultReplacesNothing) {
    m_shortcuts.setShortcut(shortcutOf(commandA), named("captureArea"));
    const Name name = captureArea();
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(commandA));
}

TEST_F(NamedShortcutsStorage, DefaultDoesNotReplaceWhatCannotBeRead) {
    store("captureArea", "nonsense");
    const Name name = captureArea();
    EXPECT_EQ(stored("captureArea"), QStringLiteral("nonsense"));
    EXPECT_EQ(m_shortcuts.getShortcut(name), std::nullopt);
}

TEST_F(NamedShortcutsStorage, ShortcutIsStoredAsText) {
    m_shortcuts.setShortcut(shortcutOf(commandA), named("x"));
    EXPECT_EQ(stored("x"), QStringLiteral(R"({"carbonKeyCode":0,"carbonModifiers":256})"));
}

TEST_F(NamedShortcutsStorage, ClearedIsStoredAsFalse) {
    const Name name = captureArea();
    m_shortcuts.setShortcut(std::nullopt, name);
    EXPECT_TRUE(m_defaults.contains(keyOf("captureArea")));
    EXPECT_EQ(stored("captureArea"), QStringLiteral("false"));
    EXPECT_EQ(m_shortcuts.getShortcut(name), std::nullopt);
}

TEST_F(NamedShortcutsStorage, ShortcutSurvivesARestart) {
    m_shortcuts.setShortcut(shortcutOf(commandA), captureArea());
    EXPECT_EQ(afterRestart(false), shortcutOf(commandA));
    EXPECT_EQ(afterRestart(true), shortcutOf(commandA));
}

TEST_F(NamedShortcutsStorage, ClearedSurvivesARestart) {
    m_shortcuts.setShortcut(std::nullopt, captureArea());
    EXPECT_EQ(afterRestart(true), std::nullopt);
    EXPECT_EQ(afterRestart(true), std::nullopt);
    EXPECT_TRUE(m_file.contents().contains("KeyboardShortcuts_captureArea=false"));
}

TEST_F(NamedShortcutsStorage, EachChangeIsToldOfOnce) {
    const Name name = named("x");
    m_shortcuts.setShortcut(shortcutOf(commandA), name);
    EXPECT_THAT(m_changes, ElementsAre("x"));
    m_shortcuts.setShortcut(shortcutOf(commandA), name);
    EXPECT_THAT(m_changes, ElementsAre("x", "x"));
    m_shortcuts.setShortcut(std::nullopt, name);
    EXPECT_THAT(m_changes, ElementsAre("x", "x", "x"));
    m_shortcuts.reset({name, named("y")});
    EXPECT_THAT(m_changes, ElementsAre("x", "x", "x", "x", "y"));
}

TEST_F(NamedShortcutsStorage, ChangeIsToldOfWhenItIsDone) {
    const Name name = named("x");
    m_shortcuts.onKeyUp(name, [] {});
    bool isDone = false;
    QObject::connect(&m_shortcuts, &NamedShortcuts::shortcutByNameDidChange, &m_shortcuts,
                     [this, &isDone](const Name& changed) {
                         isDone = m_shortcuts.getShortcut(changed) == shortcutOf(commandA) &&
                                  isRegistered(commandA);
                     });
    m_shortcuts.setShortcut(shortcutOf(commandA), name);
    EXPECT_TRUE(isDone);
}

TEST_F(NamedShortcutsStorage, OnlyChangesAreToldOf) {
    store("x", "nonsense");
    static_cast<void>(m_shortcuts.getShortcut(named("x")));
    m_shortcuts.onKeyUp(named("x"), [] {});
    m_shortcuts.disable({named("x")});
    m_shortcuts.enable({named("x")});
    EXPECT_THAT(m_changes, IsEmpty());
}

TEST_F(NamedShortcutsStorage, ResetGivesTheDefaultAgain) {
    const Name name = captureArea();
    m_shortcuts.onKeyUp(name, note("up"));
    m_shortcuts.setShortcut(shortcutOf(commandA), name);
    m_shortcuts.reset({name});
    EXPECT_EQ(stored("captureArea"), defaultText);
    EXPECT_TRUE(isRegistered(controlShiftP));
    EXPECT_FALSE(isRegistered(commandA));
}

TEST_F(NamedShortcutsStorage, ResetOfAClearedNameGivesTheDefaultAgain) {
    const Name name = captureArea();
    m_shortcuts.setShortcut(std::nullopt, name);
    m_shortcuts.reset({name});
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(controlShiftP));
}

TEST_F(NamedShortcutsStorage, ResetWithoutADefaultLeavesNone) {
    m_shortcuts.setShortcut(shortcutOf(commandA), named("x"));
    m_shortcuts.reset({named("x")});
    EXPECT_EQ(m_shortcuts.getShortcut(named("x")), std::nullopt);
}

TEST_F(NamedShortcutsStorage, ResetAllKnowsEveryName) {
    const Name name = captureArea();
    m_shortcuts.setShortcut(shortcutOf(commandA), name);
    m_shortcuts.setShortcut(shortcutOf(commandA), named("x"));
    m_changes.clear();
    m_shortcuts.resetAll();
    EXPECT_THAT(m_changes, UnorderedElementsAre("captureArea", "x"));
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(controlShiftP));
    EXPECT_EQ(m_shortcuts.getShortcut(named("x")), std::nullopt);
}

/// Whichever way the name was first met.
TEST_F(NamedShortcutsStorage, ResetAllKnowsDefaultsThatCameLater) {
    m_shortcuts.onKeyUp(named("captureArea"), [] {});
    const Name name = captureArea();
    m_shortcuts.setShortcut(std::nullopt, named("captureArea"));
    m_shortcuts.resetAll();
    EXPECT_EQ(m_shortcuts.getShortcut(name), shortcutOf(controlShiftP));
}

} // namespace KeyboardShortcuts
