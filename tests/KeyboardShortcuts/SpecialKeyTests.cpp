#include "KeyboardShortcuts/SpecialKey.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace KeyboardShortcuts {

namespace {

struct Row {
    SpecialKey key;
    std::int64_t code;
    QString description;
    /// Empty for none.
    QString menuText;
    QString declarativeName;
};

QString keycap(const char16_t* text) {
    return QStringView(text).toString() + QChar(0x20e3);
}

/// In the order of the cases.
std::vector<Row> table() {
    using enum SpecialKey;
    const auto sign = [](char16_t character) { return QString(QChar(character)); };
    std::vector<Row> rows = {
        {return_, 36, sign(0x21a9), sign(0x21a9), sign(u'\r')},
        {delete_, 51, sign(0x232b), sign(0x232b), sign(0x08)},
        {deleteForward, 117, sign(0x2326), sign(0x2326), sign(0xf728)},
        {end, 119, sign(0x2198), sign(0x2198), sign(0xf72b)},
        {escape, 53, sign(0x238b), sign(0x238b), sign(0x1b)},
        {help, 114, QStringLiteral("?\u20dd"), QStringLiteral("?\u20dd"), sign(0xf746)},
        {home, 115, sign(0x2196), sign(0x2196), sign(0xf729)},
        {space, 49, QStringLiteral("Space"), sign(u' '), sign(u' ')},
        {tab, 48, sign(0x21e5), sign(0x21e5), sign(u'\t')},
        {pageUp, 116, sign(0x21de), sign(0x21de), sign(0xf72c)},
        {pageDown, 121, sign(0x21df), sign(0x21df), sign(0xf72d)},
        {upArrow, 126, sign(0x2191), sign(0x2191), sign(0xf700)},
        {rightArrow, 124, sign(0x2192), sign(0x2192), sign(0xf703)},
        {downArrow, 125, sign(0x2193), sign(0x2193), sign(0xf701)},
        {leftArrow, 123, sign(0x2190), sign(0x2190), sign(0xf702)},
    };
    const int functionKeys[] = {122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                                103, 111, 105, 107, 113, 106, 64, 79,  80,  90};
    for (int number = 1; number <= 20; ++number) {
        const QString character = sign(static_cast<char16_t>(0xf703 + number));
        rows.push_back({static_cast<SpecialKey>(static_cast<int>(f1) + number - 1),
                        functionKeys[number - 1], QStringLiteral("F%1").arg(number), character,
                        character});
    }
    const int digits[] = {82, 83, 84, 85, 86, 87, 88, 89, 91, 92};
    for (int digit = 0; digit <= 9; ++digit) {
        rows.push_back({static_cast<SpecialKey>(static_cast<int>(keypad0) + digit),
                        digits[digit],
                        QString::number(digit) + QChar(0x20e3),
                        {},
                        {}});
    }
    rows.push_back({keypadClear, 71, keycap(u"\u2612"), {}, {}});
    rows.push_back({keypadDecimal, 65, keycap(u"."), {}, {}});
    rows.push_back({keypadDivide, 75, keycap(u"/"), {}, {}});
    rows.push_back({keypadEnter, 76, keycap(u"\u21a9"), {}, {}});
    rows.push_back({keypadEquals, 81, keycap(u"="), {}, {}});
    rows.push_back({keypadMinus, 78, keycap(u"-"), {}, {}});
    rows.push_back({keypadMultiply, 67, keycap(u"*"), {}, {}});
    rows.push_back({keypadPlus, 69, keycap(u"+"), {}, {}});
    return rows;
}

std::optional<QString> unlessEmpty(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

class EachSpecialKey : public ::testing::TestWithParam<Row> {};

} // namespace

TEST_P(EachSpecialKey, IsMappedFromItsKeyCode) {
    const auto found = keyToSpecialKeyMapping().find(GetParam().code);
    ASSERT_NE(found, keyToSpecialKeyMapping().end());
    EXPECT_EQ(found->second, GetParam().key);
}

TEST_P(EachSpecialKey, IsMappedToItsKeyCode) {
    EXPECT_EQ(keyOf(GetParam().key).rawValue(), GetParam().code);
}

TEST_P(EachSpecialKey, IsDescribed) {
    EXPECT_EQ(presentableDescription(GetParam().key), GetParam().description);
}

TEST_P(EachSpecialKey, HasItsMenuText) {
    EXPECT_EQ(appKitMenuItemKeyEquivalent(GetParam().key), unlessEmpty(GetParam().menuText));
}

TEST_P(EachSpecialKey, HasItsDeclarativeName) {
    EXPECT_EQ(swiftUIKeyEquivalent(GetParam().key), unlessEmpty(GetParam().declarativeName));
}

/// What menus do not show has no name in key sequences either.
TEST_P(EachSpecialKey, HasAQtNameWhereItHasAMenuText) {
    EXPECT_EQ(qtKey(GetParam().key).has_value(), !GetParam().menuText.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, EachSpecialKey, ::testing::ValuesIn(table()),
                         [](const auto& test) { return "code" + std::to_string(test.param.code); });

TEST(SpecialKey, CasesAreInOrder) {
    int index = 0;
    for (const Row& row : table()) {
        EXPECT_EQ(static_cast<int>(row.key), index++);
    }
    EXPECT_EQ(index, 53);
}

TEST(SpecialKey, OnlyTheFiftyThreeAreMapped) {
    EXPECT_EQ(keyToSpecialKeyMapping().size(), 53U);
    for (const std::int64_t code : {0, 35, 50, 54, 63, 74, 110, -1, 1'000'000}) {
        EXPECT_FALSE(keyToSpecialKeyMapping().contains(code)) << code;
    }
}

TEST(SpecialKey, MappingIsBuiltOnce) {
    EXPECT_EQ(&keyToSpecialKeyMapping(), &keyToSpecialKeyMapping());
}

TEST(SpecialKey, QtNamesAreDifferent) {
    std::set<int> names;
    for (const Row& row : table()) {
        if (const auto name = qtKey(row.key)) {
            EXPECT_TRUE(names.insert(*name).second) << *name;
        }
    }
    EXPECT_EQ(names.size(), 35U);
}

} // namespace KeyboardShortcuts
