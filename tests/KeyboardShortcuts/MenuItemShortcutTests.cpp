#include "KeyboardShortcuts/MenuItemShortcut.h"

#include "NamedShortcutsFixture.h"

#include <QAction>

namespace KeyboardShortcuts {

namespace {

class MenuItemShortcut : public NamedShortcutsFixture {
protected:
    void bind() { setShortcut(m_item, named("x"), m_shortcuts, m_layout); }

    snapvane::null::NullKeyboardLayout m_layout;
    QAction m_item;
};

} // namespace

TEST_F(MenuItemShortcut, IsShownAtOnce) {
    withShortcut("x", controlShiftP);
    bind();
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
}

TEST_F(MenuItemShortcut, NoneIsShownAsNone) {
    m_item.setShortcut(QKeySequence(Qt::Key_F1));
    bind();
    EXPECT_EQ(m_item.shortcut(), QKeySequence());
}

TEST_F(MenuItemShortcut, FollowsChanges) {
    bind();
    withShortcut("x", commandA);
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::META | Qt::Key_A));
    m_shortcuts.setShortcut(std::nullopt, named("x"));
    EXPECT_EQ(m_item.shortcut(), QKeySequence());
    m_shortcuts.reset({Name(QStringLiteral("x"), shortcutOf(controlShiftP))});
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
}

TEST_F(MenuItemShortcut, OtherNamesAreNotItsOwn) {
    withShortcut("x", commandA);
    bind();
    withShortcut("y", controlShiftP);
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::META | Qt::Key_A));
}

TEST_F(MenuItemShortcut, FollowsTheLayout) {
    withShortcut("x", commandA);
    bind();
    m_layout.keys = [](std::uint16_t) { return std::optional(QStringLiteral("q")); };
    Q_EMIT m_layout.changed();
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::META | Qt::Key_Q));
}

TEST_F(MenuItemShortcut, KeypadKeysAreNotShown) {
    withShortcut("x", {82, 0x100});
    bind();
    EXPECT_EQ(m_item.shortcut(), QKeySequence());
}

TEST_F(MenuItemShortcut, UnreadableIsNotShown) {
    store("x", "nonsense");
    bind();
    EXPECT_EQ(m_item.shortcut(), QKeySequence());
}

TEST_F(MenuItemShortcut, EntryMayGo) {
    {
        QAction item;
        setShortcut(item, named("x"), m_shortcuts, m_layout);
    }
    withShortcut("x", commandA);
    Q_EMIT m_layout.changed();
    bind();
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::META | Qt::Key_A));
}

TEST_F(MenuItemShortcut, ModuleMayGoBeforeTheEntry) {
    auto shortcuts = std::make_unique<NamedShortcuts>(m_defaults, m_center);
    withShortcut("x", commandA);
    setShortcut(m_item, named("x"), *shortcuts, m_layout);
    shortcuts.reset();
    Q_EMIT m_layout.changed();
    EXPECT_EQ(m_item.shortcut(), QKeySequence(Qt::META | Qt::Key_A));
}

TEST_F(MenuItemShortcut, LayoutMayGoBeforeTheEntry) {
    auto layout = std::make_unique<snapvane::null::NullKeyboardLayout>();
    withShortcut("x", commandA);
    setShortcut(m_item, named("x"), m_shortcuts, *layout);
    layout.reset();
    m_shortcuts.setShortcut(std::nullopt, named("x"));
    EXPECT_EQ(m_item.shortcut(), QKeySequence());
}

} // namespace KeyboardShortcuts
