#include "KeyboardShortcuts/Localization.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

class TextKey : public ::testing::TestWithParam<const char*> {};

} // namespace

TEST_P(TextKey, HasAText) {
    const QString key = QString::fromLatin1(GetParam());
    EXPECT_NE(localized(key), key);
    EXPECT_FALSE(localized(key).trimmed().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, TextKey,
                         ::testing::Values("space_key", "record_shortcut", "press_shortcut",
                                           "keyboard_shortcut_used_by_menu_item",
                                           "keyboard_shortcut_disallowed",
                                           "keyboard_shortcut_used_by_system",
                                           "keyboard_shortcuts_can_be_changed",
                                           "force_use_shortcut"),
                         [](const auto& test) { return std::string(test.param); });

TEST(Localization, SpaceIsTheWord) {
    EXPECT_EQ(localized(QStringLiteral("space_key")), QStringLiteral("space"));
}

TEST(Localization, TheMenuItemsTitleHasAPlace) {
    const QString format = localized(QStringLiteral("keyboard_shortcut_used_by_menu_item"));
    EXPECT_EQ(format.count(QStringLiteral("%1")), 1);
    EXPECT_TRUE(format.arg(QStringLiteral("Quit")).contains(QStringLiteral("Quit")));
}

TEST(Localization, UnknownKeysStandForThemselves) {
    EXPECT_EQ(localized(QStringLiteral("no_such_key")), QStringLiteral("no_such_key"));
    EXPECT_EQ(localized(QString()), QString());
}

} // namespace KeyboardShortcuts
