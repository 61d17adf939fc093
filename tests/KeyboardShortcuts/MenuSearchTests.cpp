#include "KeyboardShortcuts/Shortcut.h"

#include "ShortcutPrinting.h"
#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

constexpr ModifierFlags command = ModifierFlags::command;
constexpr ModifierFlags commandShift = ModifierFlags::command | ModifierFlags::shift;
constexpr ModifierFlags everyModifier(0x9e0000);

struct Comparison {
    const char* name;
    Shortcut shortcut;
    QString keyEquivalent;
    ModifierFlags mask;
    bool matches;
};

QString text(char16_t character) {
    return QString(QChar(character));
}

const Comparison comparisons[] = {
    {"same", {Key::p, command}, text(u'p'), command, true},
    {"other_key", {Key::a, command}, text(u'p'), command, false},
    {"other_mask", {Key::p, command}, text(u'p'), ModifierFlags::control, false},
    {"more_in_mask", {Key::p, command}, text(u'p'), commandShift, false},
    {"less_in_mask", {Key::p, commandShift}, text(u'p'), command, false},
    {"foreign_bit_in_mask",
     {Key::p, command},
     text(u'p'),
     command | ModifierFlags::capsLock,
     false},
    {"no_modifiers", {Key::p, ModifierFlags::none}, text(u'p'), ModifierFlags::none, true},
    {"all_modifiers", {Key::p, everyModifier}, text(u'p'), everyModifier, true},
    {"function_counts", {Key::p, command | ModifierFlags::function}, text(u'p'), command, false},
    {"upper_case_is_shift", {Key::p, commandShift}, text(u'P'), command, true},
    {"upper_case_and_shift", {Key::p, commandShift}, text(u'P'), commandShift, true},
    {"upper_case_without_shift", {Key::p, command}, text(u'P'), command, false},
    {"upper_case_with_its_own_shift", {Key::p, command}, text(u'P'), commandShift, false},
    {"shifted_sign_is_another", {Key::one, commandShift}, text(u'!'), command, false},
    {"digit_with_shift", {Key::one, commandShift}, text(u'1'), commandShift, true},
    {"nothing", {Key::p, command}, QString(), command, false},
    {"longer_text", {Key::p, command}, QStringLiteral("pp"), command, false},
    {"return", {Key::return_, command}, text(0x21a9), command, true},
    {"return_as_control_character", {Key::return_, command}, text(u'\r'), command, false},
    {"space", {Key::space, command}, text(u' '), command, true},
    {"function_key", {Key::f12, ModifierFlags::none}, text(0xf70f), ModifierFlags::none, true},
    {"help", {Key::help, command}, QStringLiteral("?\u20dd"), command, true},
    {"keypad_digit", {Key::keypad5, command}, text(u'5'), command, false},
    {"keypad_sign", {Key::keypad5, command}, QStringLiteral("5\u20e3"), command, false},
    {"keypad_without_text", {Key::keypad5, command}, QString(), command, false},
    {"key_that_types_nothing", {Key::volumeUp, command}, QString(), command, false},
};

class MenuComparison : public ::testing::TestWithParam<Comparison> {};

class MenuSearch : public ::testing::Test {
protected:
    const MenuItem* search(const Menu& menu) const {
        return m_shortcut.menuItemWithMatchingShortcut(menu, m_layout);
    }

    snapvane::null::NullKeyboardLayout m_layout;
    Shortcut m_shortcut{Key::p, command};
};

MenuItem match(const char* title) {
    return {QString::fromLatin1(title), QStringLiteral("p"), command, {}};
}

MenuItem other(const char* title, Menu submenu = {}) {
    return {QString::fromLatin1(title), QStringLiteral("o"), command, std::move(submenu)};
}

} // namespace

TEST_P(MenuComparison, IsOfTextAndMask) {
    const snapvane::null::NullKeyboardLayout layout;
    const Menu menu = {{QStringLiteral("Entry"), GetParam().keyEquivalent, GetParam().mask, {}}};
    const MenuItem* found = GetParam().shortcut.menuItemWithMatchingShortcut(menu, layout);
    EXPECT_EQ(found, GetParam().matches ? menu.data() : nullptr);
}

INSTANTIATE_TEST_SUITE_P(Each, MenuComparison, ::testing::ValuesIn(comparisons),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(MenuSearch, EmptyMenuHasNone) {
    EXPECT_EQ(search({}), nullptr);
}

TEST_F(MenuSearch, FindsTheFirst) {
    const Menu menu = {other("1"), match("2"), match("3")};
    EXPECT_EQ(search(menu), &menu[1]);
}

TEST_F(MenuSearch, LooksIntoSubmenusOnTheWay) {
    const Menu menu = {other("1", {other("1.1", {match("1.1.1")}), match("1.2")}), match("2")};
    EXPECT_EQ(search(menu), &menu[0].submenu[0].submenu[0]);
}

TEST_F(MenuSearch, AnEntryComesBeforeItsSubmenu) {
    Menu menu = {match("1")};
    menu[0].submenu = {match("1.1")};
    EXPECT_EQ(search(menu), menu.data());
}

TEST_F(MenuSearch, GoesOnAfterASubmenuWithout) {
    const Menu menu = {other("1", {other("1.1")}), match("2")};
    EXPECT_EQ(search(menu), &menu[1]);
}

TEST_F(MenuSearch, FollowsTheLayout) {
    const Menu menu = {match("1")};
    m_layout.keys = [](std::uint16_t code) {
        return code == Key::p ? std::optional(QStringLiteral("l")) : std::nullopt;
    };
    EXPECT_EQ(search(menu), nullptr);
}

TEST_F(MenuSearch, EntriesHaveCommandUnlessTheySayOtherwise) {
    MenuItem item;
    item.keyEquivalent = QStringLiteral("p");
    const Menu menu = {item};
    EXPECT_EQ(search(menu), menu.data());
}

} // namespace KeyboardShortcuts
