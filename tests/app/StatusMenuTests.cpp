#include "app/StatusMenu.h"

#include "selection/SessionFakes.h"

#include <QApplication>
#include <QKeyEvent>

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct EntryCase {
    const char16_t* title;
    const char* key;
    const char* shown;
    bool isCheckable;
    StatusMenuAction action;
    const char* symbol;
};

// Null stands for a separator.
const std::vector<std::optional<EntryCase>> expectedEntries = {
    EntryCase{u"Capture Area", "", "", false, StatusMenuAction::CaptureArea, "viewfinder"},
    std::nullopt,
    EntryCase{u"Show crosshair lines while capturing", "", "", true,
              StatusMenuAction::ToggleCrosshairLines, "plus.viewfinder"},
    EntryCase{u"Settings\u2026", ",", "Ctrl+,", false, StatusMenuAction::OpenSettings, "gearshape"},
    EntryCase{u"About Snapvane", "", "", false, StatusMenuAction::OpenAbout, "info.circle"},
    std::nullopt,
    EntryCase{u"Quit", "q", "Ctrl+Q", false, StatusMenuAction::Quit, "power"},
};

TEST(StatusMenuModel, HasExactlyTheSevenEntries) {
    const std::vector<StatusMenuEntry> entries = statusMenuEntries();
    ASSERT_EQ(entries.size(), expectedEntries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto& expected = expectedEntries[i];
        ASSERT_EQ(entries[i].isSeparator, !expected.has_value()) << i;
        if (expected) {
            EXPECT_EQ(entries[i].title, QString::fromUtf16(expected->title));
            EXPECT_EQ(entries[i].keyEquivalent, QLatin1String(expected->key));
            EXPECT_EQ(entries[i].keySequence(),
                      QKeySequence(QLatin1String(expected->shown), QKeySequence::PortableText));
            EXPECT_EQ(entries[i].isCheckable, expected->isCheckable);
            EXPECT_EQ(entries[i].action, expected->action);
            EXPECT_EQ(QXMenuSymbol::symbolName(entries[i].symbol), QLatin1String(expected->symbol));
        }
    }
}

class StatusMenuTest : public ::testing::Test {
protected:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(&menu.menu(), &event);
    }

    std::vector<StatusMenuAction> chosen;
    StatusMenu menu{[this](StatusMenuAction action) { chosen.push_back(action); }};
};

TEST_F(StatusMenuTest, ShowsTheModel) {
    const QList<QAction*> actions = menu.menu().actions();
    ASSERT_EQ(actions.size(), static_cast<qsizetype>(expectedEntries.size()));
    for (std::size_t i = 0; i < expectedEntries.size(); ++i) {
        const QAction& action = *actions[static_cast<qsizetype>(i)];
        const auto& expected = expectedEntries[i];
        ASSERT_EQ(action.isSeparator(), !expected.has_value()) << i;
        if (expected) {
            EXPECT_EQ(action.text(), QString::fromUtf16(expected->title));
            EXPECT_EQ(action.shortcut().toString(QKeySequence::PortableText),
                      QLatin1String(expected->shown));
            EXPECT_EQ(action.isCheckable(), expected->isCheckable);
            EXPECT_TRUE(action.isEnabled());
            EXPECT_TRUE(action.isVisible());
            EXPECT_EQ(&action, &menu.action(expected->action));
        }
    }
}

TEST_F(StatusMenuTest, NoEntryIsWithoutAnImage) {
    for (const QAction* action : menu.menu().actions()) {
        if (!action->isSeparator()) {
            EXPECT_FALSE(action->icon().pixmap(16, 16).isNull()) << action->text().toStdString();
            EXPECT_TRUE(action->isIconVisibleInMenu());
            EXPECT_TRUE(action->isShortcutVisibleInContextMenu());
            EXPECT_FALSE(action->toolTip().isEmpty());
        }
    }
}

TEST_F(StatusMenuTest, OnlyTheCrosshairEntryCanBeChecked) {
    QAction& lines = menu.action(StatusMenuAction::ToggleCrosshairLines);
    lines.setChecked(true);
    EXPECT_TRUE(lines.isChecked());
    menu.action(StatusMenuAction::Quit).setChecked(true);
    EXPECT_FALSE(menu.action(StatusMenuAction::Quit).isChecked());
}

TEST_F(StatusMenuTest, ChosenEntriesReachTheHandler) {
    for (QAction* action : menu.menu().actions()) {
        action->trigger();
    }
    EXPECT_THAT(chosen,
                ElementsAre(StatusMenuAction::CaptureArea, StatusMenuAction::ToggleCrosshairLines,
                            StatusMenuAction::OpenSettings, StatusMenuAction::OpenAbout,
                            StatusMenuAction::Quit));
}

TEST_F(StatusMenuTest, KeysActWhileTheMenuIsShown) {
    menu.menu().popup({0, 0});
    press(Qt::Key_Q, Qt::ControlModifier, QStringLiteral("\x11"));
    EXPECT_THAT(chosen, ElementsAre(StatusMenuAction::Quit));
    EXPECT_FALSE(menu.menu().isVisible());
    menu.menu().popup({0, 0});
    press(Qt::Key_Comma, Qt::ControlModifier, QStringLiteral(","));
    EXPECT_THAT(chosen, ElementsAre(StatusMenuAction::Quit, StatusMenuAction::OpenSettings));
    EXPECT_FALSE(menu.menu().isVisible());
}

/// The menu has reported its closing before what was chosen starts.
TEST_F(StatusMenuTest, AKeyClosesTheMenuFirst) {
    std::vector<std::size_t> chosenAtClosing;
    QObject::connect(&menu.tracking(), &MenuTracking::didClose, &menu,
                     [&] { chosenAtClosing.push_back(chosen.size()); });
    menu.menu().popup({0, 0});
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_THAT(chosenAtClosing, ElementsAre(0U));
}

TEST_F(StatusMenuTest, OtherKeysDoNotAct) {
    menu.menu().popup({0, 0});
    press(Qt::Key_W, Qt::ControlModifier);
    press(Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier);
    press(Qt::Key_Comma, Qt::NoModifier, QStringLiteral(","));
    EXPECT_THAT(chosen, IsEmpty());
    EXPECT_TRUE(menu.menu().isVisible());
    press(Qt::Key_Escape, Qt::NoModifier);
    EXPECT_THAT(chosen, IsEmpty());
    EXPECT_FALSE(menu.menu().isVisible());
}

/// The shortcut that the capture entry shows is a global one; in the menu it must start nothing.
TEST_F(StatusMenuTest, TheShownGlobalShortcutDoesNotActInTheMenu) {
    menu.action(StatusMenuAction::CaptureArea)
        .setShortcut(QKeySequence(Qt::ControlModifier | Qt::ShiftModifier | Qt::Key_P));
    menu.menu().popup({0, 0});
    press(Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(chosen, IsEmpty());
    EXPECT_TRUE(menu.menu().isVisible());
    press(Qt::Key_Comma, Qt::ControlModifier, QStringLiteral(","));
    menu.menu().popup({0, 0});
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_THAT(chosen, ElementsAre(StatusMenuAction::OpenSettings, StatusMenuAction::Quit));
}

} // namespace

} // namespace snapvane
