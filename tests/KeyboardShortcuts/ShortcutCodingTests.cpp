#include "KeyboardShortcuts/Shortcut.h"

#include "ShortcutPrinting.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

struct BadText {
    const char* name;
    QByteArray json;
};

void PrintTo(const BadText& bad, std::ostream* stream) {
    *stream << bad.name;
}

QByteArray deep(int depth) {
    return QByteArray(R"({"carbonKeyCode":35,"carbonModifiers":4608,"x":)") +
           QByteArray(depth, '[') + QByteArray(depth, ']') + "}";
}

const BadText badTexts[] = {
    {"nothing", ""},
    {"blank", "  \n"},
    {"no_json", "control+shift+P"},
    {"number", "35"},
    {"false", "false"},
    {"true", "true"},
    {"null", "null"},
    {"text", R"("{\"carbonKeyCode\":35,\"carbonModifiers\":4608}")"},
    {"array", R"([{"carbonKeyCode":35,"carbonModifiers":4608}])"},
    {"numbers_in_array", "[35,4608]"},
    {"empty_object", "{}"},
    {"no_modifiers", R"({"carbonKeyCode":35})"},
    {"no_key_code", R"({"carbonModifiers":4608})"},
    {"names_in_other_case", R"({"carbonkeycode":35,"carbonmodifiers":4608})"},
    {"nested", R"({"shortcut":{"carbonKeyCode":35,"carbonModifiers":4608}})"},
    {"fraction_of_key_code", R"({"carbonKeyCode":35.5,"carbonModifiers":4608})"},
    {"fraction_of_modifiers", R"({"carbonKeyCode":35,"carbonModifiers":4608.25})"},
    {"beyond_64_bits", R"({"carbonKeyCode":9223372036854775808,"carbonModifiers":4608})"},
    {"far_beyond_64_bits", R"({"carbonKeyCode":35,"carbonModifiers":1e40})"},
    {"beyond_doubles", R"({"carbonKeyCode":1e999,"carbonModifiers":4608})"},
    {"below_64_bits", R"({"carbonKeyCode":-9223372036854777856,"carbonModifiers":4608})"},
    {"true_as_key_code", R"({"carbonKeyCode":true,"carbonModifiers":4608})"},
    {"false_as_modifiers", R"({"carbonKeyCode":35,"carbonModifiers":false})"},
    {"text_as_key_code", R"({"carbonKeyCode":"35","carbonModifiers":4608})"},
    {"null_as_modifiers", R"({"carbonKeyCode":35,"carbonModifiers":null})"},
    {"array_as_key_code", R"({"carbonKeyCode":[35],"carbonModifiers":4608})"},
    {"object_as_modifiers", R"({"carbonKeyCode":35,"carbonModifiers":{}})"},
    {"cut_off", R"({"carbonKeyCode":35,"carbonModifiers":46)"},
    {"comma_at_end", R"({"carbonKeyCode":35,"carbonModifiers":4608,})"},
    {"single_quotes", R"({'carbonKeyCode':35,'carbonModifiers':4608})"},
    {"hexadecimal", R"({"carbonKeyCode":0x23,"carbonModifiers":4608})"},
    {"infinite", R"({"carbonKeyCode":Infinity,"carbonModifiers":4608})"},
    {"garbage_after", R"({"carbonKeyCode":35,"carbonModifiers":4608}x)"},
    {"two_objects", R"({"carbonKeyCode":35,"carbonModifiers":4608}{})"},
    {"zero_byte_before", QByteArray("\0{}", 3)},
    {"zero_byte_within", QByteArray("{\"carbonKeyCode\":35,\0\"carbonModifiers\":4608}", 43)},
    {"zero_byte_in_number", QByteArray("{\"carbonKeyCode\":3\0005,\"carbonModifiers\":4608}", 43)},
    {"no_utf8", QByteArray("{\"carbonKeyCode\":35,\"carbonModifiers\":4608,\"\xff\":1}")},
    {"very_deep", deep(100'000)},
};

struct GoodText {
    const char* name;
    QByteArray json;
    std::int64_t keyCode;
    std::int64_t modifiers;
};

void PrintTo(const GoodText& good, std::ostream* stream) {
    *stream << good.name;
}

const GoodText goodTexts[] = {
    {"plain", R"({"carbonKeyCode":35,"carbonModifiers":4608})", 35, 4608},
    {"other_order", R"({"carbonModifiers":4608,"carbonKeyCode":35})", 35, 4608},
    {"blanks", " {\n\"carbonKeyCode\" : 35 ,\t\"carbonModifiers\" : 4608 }\n", 35, 4608},
    {"more_members", R"({"a":[{}],"carbonKeyCode":35,"carbonModifiers":4608,"z":"z"})", 35, 4608},
    {"whole_with_point", R"({"carbonKeyCode":35.0,"carbonModifiers":4608.00})", 35, 4608},
    {"whole_with_exponent", R"({"carbonKeyCode":3.5e1,"carbonModifiers":4608})", 35, 4608},
    {"not_normalised", R"({"carbonKeyCode":35,"carbonModifiers":1048575})", 35, 1048575},
    {"negative", R"({"carbonKeyCode":-1,"carbonModifiers":-4608})", -1, -4608},
    {"zero", R"({"carbonKeyCode":0,"carbonModifiers":0})", 0, 0},
    {"beyond_doubles_exactness", R"({"carbonKeyCode":9007199254740993,"carbonModifiers":0})",
     9007199254740993, 0},
    {"largest", R"({"carbonKeyCode":9223372036854775807,"carbonModifiers":0})", INT64_MAX, 0},
    {"smallest", R"({"carbonKeyCode":0,"carbonModifiers":-9223372036854775808})", 0, INT64_MIN},
    {"escaped_name", R"({"carbon\u004beyCode":35,"carbonModifiers":4608})", 35, 4608},
};

class BadShortcutText : public ::testing::TestWithParam<BadText> {};
class GoodShortcutText : public ::testing::TestWithParam<GoodText> {};

} // namespace

TEST_P(BadShortcutText, IsNoShortcut) {
    EXPECT_EQ(Shortcut::decoded(GetParam().json), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Each, BadShortcutText, ::testing::ValuesIn(badTexts),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(GoodShortcutText, IsTakenAsItStands) {
    const auto shortcut = Shortcut::decoded(GetParam().json);
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(shortcut->carbonKeyCode(), GetParam().keyCode);
    EXPECT_EQ(shortcut->carbonModifiers(), GetParam().modifiers);
}

TEST_P(GoodShortcutText, EncodesToWhatIsReadTheSame) {
    const auto shortcut = Shortcut::decoded(GetParam().json);
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(Shortcut::decoded(shortcut->encoded()), shortcut);
}

INSTANTIATE_TEST_SUITE_P(Each, GoodShortcutText, ::testing::ValuesIn(goodTexts),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ShortcutCoding, WritesBothMembersInOrder) {
    EXPECT_EQ(Shortcut(Key::a, ModifierFlags::command).encoded(),
              QByteArray(R"({"carbonKeyCode":0,"carbonModifiers":256})"));
    EXPECT_EQ(Shortcut(Key::p, ModifierFlags::control | ModifierFlags::shift).encoded(),
              QByteArray(R"({"carbonKeyCode":35,"carbonModifiers":4608})"));
}

TEST(ShortcutCoding, WritesLargeNumbersInFull) {
    EXPECT_EQ(Shortcut::fromCarbon(INT64_MAX, 0).encoded(),
              QByteArray(R"({"carbonKeyCode":9223372036854775807,"carbonModifiers":0})"));
}

/// Readers differ on which of the two holds; one of them must, and no other number.
TEST(ShortcutCoding, ARepeatedMemberHasOneOfItsValues) {
    const auto shortcut =
        Shortcut::decoded(R"({"carbonKeyCode":1,"carbonKeyCode":2,"carbonModifiers":256})");
    if (shortcut) {
        EXPECT_TRUE(shortcut->carbonKeyCode() == 1 || shortcut->carbonKeyCode() == 2);
        EXPECT_EQ(shortcut->carbonModifiers(), 256);
    }
}

TEST(ShortcutCoding, NotNormalisedIsShownAndComparedAsItStands) {
    const auto stored = Shortcut::decoded(R"({"carbonKeyCode":35,"carbonModifiers":4609})");
    ASSERT_TRUE(stored);
    EXPECT_NE(*stored, Shortcut::fromCarbon(35, 4608));
    EXPECT_EQ(stored->modifiers(), ModifierFlags::control | ModifierFlags::shift);
}

} // namespace KeyboardShortcuts
