#include "KeyboardShortcuts/Shortcut.h"

#include "ShortcutPrinting.h"
#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

constexpr ModifierFlags controlShift = ModifierFlags::control | ModifierFlags::shift;

/// A layout on which every key gives the same.
class ShortcutText : public ::testing::Test {
protected:
    void everyKeyGives(std::optional<QString> text) {
        m_layout.keys = [text = std::move(text)](std::uint16_t) { return text; };
    }
    QString described(const Shortcut& shortcut) {
        return shortcut.presentableDescription(m_layout);
    }

    snapvane::null::NullKeyboardLayout m_layout;
};

/// Stored by hand: any number may stand for the key.
class StrangeKeyCode : public ShortcutText, public ::testing::WithParamInterface<std::int64_t> {};

const QString unknown = QStringLiteral("\ufffd");

} // namespace

TEST_F(ShortcutText, ModifiersAndKeyFollowEachOther) {
    EXPECT_EQ(described(Shortcut(Key::p, controlShift)), QStringLiteral("\u2303\u21e7P"));
    EXPECT_EQ(described(Shortcut(Key::p, ModifierFlags(0x9e0000))),
              QStringLiteral("\u2303\u2325\u21e7\u2318\U0001f310\ufe0eP"));
}

TEST_F(ShortcutText, SpecialKeysHaveTheirOwn) {
    EXPECT_EQ(described(Shortcut(Key::f5, ModifierFlags::none)), QStringLiteral("F5"));
    EXPECT_EQ(described(Shortcut(Key::keypad5, ModifierFlags::command)),
              QStringLiteral("\u23185\u20e3"));
    EXPECT_EQ(described(Shortcut(Key::space, ModifierFlags::option)),
              QStringLiteral("\u2325Space"));
}

TEST_F(ShortcutText, SpecialKeysAreNotAskedOfTheLayout) {
    everyKeyGives(QStringLiteral("x"));
    const Shortcut shortcut(Key::return_, ModifierFlags::none);
    EXPECT_EQ(shortcut.keyToCharacter(m_layout), std::nullopt);
    EXPECT_EQ(described(shortcut), QStringLiteral("\u21a9"));
}

TEST_F(ShortcutText, FollowsTheLayout) {
    everyKeyGives(QStringLiteral("\u00e9"));
    EXPECT_EQ(described(Shortcut(Key::p, ModifierFlags::none)), QStringLiteral("\u00c9"));
}

TEST_F(ShortcutText, AsksTheLayoutForTheKeyCode) {
    m_layout.keys = [](std::uint16_t code) { return std::optional(QString(QChar(code))); };
    EXPECT_EQ(Shortcut::fromCarbon(0x263a, 0x100).keyToCharacter(m_layout), QString(QChar(0x263a)));
}

TEST_F(ShortcutText, SharpSIsCapitalised) {
    everyKeyGives(QStringLiteral("\u00df"));
    EXPECT_EQ(described(Shortcut(Key::minus, ModifierFlags::none)), QStringLiteral("Ss"));
}

TEST_F(ShortcutText, NoLayoutGivesNoCharacter) {
    everyKeyGives(std::nullopt);
    const Shortcut shortcut(Key::p, controlShift);
    EXPECT_EQ(shortcut.keyToCharacter(m_layout), std::nullopt);
    EXPECT_EQ(shortcut.nsMenuItemKeyEquivalent(m_layout), std::nullopt);
    EXPECT_EQ(shortcut.swiftUIKeyEquivalent(m_layout), std::nullopt);
    EXPECT_EQ(described(shortcut), QStringLiteral("\u2303\u21e7") + unknown);
}

TEST_F(ShortcutText, MoreOrLessThanOneCharacterIsNone) {
    for (const QString& text : {QString(), QStringLiteral("ab"), QStringLiteral("l\u00b7l")}) {
        everyKeyGives(text);
        const Shortcut shortcut(Key::p, ModifierFlags::none);
        EXPECT_EQ(shortcut.keyToCharacter(m_layout), std::nullopt) << text.toStdString();
        EXPECT_EQ(described(shortcut), unknown);
    }
}

TEST_F(ShortcutText, OneCharacterMayTakeSeveralUnits) {
    for (const QString& text : {QStringLiteral("e\u0301"), QStringLiteral("\U0001f310")}) {
        everyKeyGives(text);
        EXPECT_EQ(Shortcut(Key::p, ModifierFlags::none).keyToCharacter(m_layout), text);
    }
}

TEST_F(ShortcutText, MenuTextIsTheCharacterOrTheSign) {
    EXPECT_EQ(Shortcut(Key::p, controlShift).nsMenuItemKeyEquivalent(m_layout),
              QStringLiteral("p"));
    EXPECT_EQ(Shortcut(Key::space, controlShift).nsMenuItemKeyEquivalent(m_layout),
              QStringLiteral(" "));
    EXPECT_EQ(Shortcut(Key::f1, controlShift).nsMenuItemKeyEquivalent(m_layout),
              QString(QChar(0xf704)));
    EXPECT_EQ(Shortcut(Key::keypad1, controlShift).nsMenuItemKeyEquivalent(m_layout), std::nullopt);
}

TEST_F(ShortcutText, DeclarativeNameIsTheCharacterOrTheNamedKey) {
    EXPECT_EQ(Shortcut(Key::p, controlShift).swiftUIKeyEquivalent(m_layout), QStringLiteral("p"));
    EXPECT_EQ(Shortcut(Key::help, controlShift).swiftUIKeyEquivalent(m_layout),
              QString(QChar(0xf746)));
    EXPECT_EQ(Shortcut(Key::keypadPlus, controlShift).swiftUIKeyEquivalent(m_layout), std::nullopt);
}

TEST_F(ShortcutText, LastKeyCodesAreOrdinary) {
    everyKeyGives(QStringLiteral("x"));
    EXPECT_EQ(Shortcut::fromCarbon(0, 0).keyToCharacter(m_layout), QStringLiteral("x"));
    EXPECT_EQ(Shortcut::fromCarbon(0xffff, 0).keyToCharacter(m_layout), QStringLiteral("x"));
}

TEST_P(StrangeKeyCode, IsShownAsUnknown) {
    everyKeyGives(QStringLiteral("x"));
    const Shortcut shortcut = Shortcut::fromCarbon(GetParam(), 0x100);
    EXPECT_EQ(described(shortcut), QStringLiteral("\u2318") + unknown);
    EXPECT_EQ(shortcut.nsMenuItemKeyEquivalent(m_layout), std::nullopt);
    EXPECT_EQ(shortcut.swiftUIKeyEquivalent(m_layout), std::nullopt);
    const Menu menu = {{QStringLiteral("Entry"), QStringLiteral("x"), ModifierFlags::command, {}}};
    EXPECT_EQ(shortcut.menuItemWithMatchingShortcut(menu, m_layout), nullptr);
}

using StrangeKeyCodeDeathTest = StrangeKeyCode;

TEST_P(StrangeKeyCodeDeathTest, HasNoCharacterToAskFor) {
    const Shortcut shortcut = Shortcut::fromCarbon(GetParam(), 0);
    EXPECT_DEATH(static_cast<void>(shortcut.keyToCharacter(m_layout)),
                 "16 bits \\(.*KeyboardShortcuts/Shortcut\\.cpp:");
}

const std::int64_t strangeKeyCodes[] = {-1, 0x10000, INT64_MIN, INT64_MAX};
INSTANTIATE_TEST_SUITE_P(Each, StrangeKeyCode, ::testing::ValuesIn(strangeKeyCodes));
INSTANTIATE_TEST_SUITE_P(Each, StrangeKeyCodeDeathTest, ::testing::ValuesIn(strangeKeyCodes));

} // namespace KeyboardShortcuts
