#include "KeyboardShortcuts/Key.h"

#include "platform/KeyCodes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <unordered_set>
#include <vector>

namespace KeyboardShortcuts {

namespace {

using ::testing::ElementsAreArray;

struct NamedKey {
    const char* name;
    Key key;
    /// As HIToolbox's Events header has it.
    std::int64_t virtualKey;
};

const NamedKey namedKeys[] = {
    {"a", Key::a, 0x00},
    {"b", Key::b, 0x0b},
    {"c", Key::c, 0x08},
    {"d", Key::d, 0x02},
    {"e", Key::e, 0x0e},
    {"f", Key::f, 0x03},
    {"g", Key::g, 0x05},
    {"h", Key::h, 0x04},
    {"i", Key::i, 0x22},
    {"j", Key::j, 0x26},
    {"k", Key::k, 0x28},
    {"l", Key::l, 0x25},
    {"m", Key::m, 0x2e},
    {"n", Key::n, 0x2d},
    {"o", Key::o, 0x1f},
    {"p", Key::p, 0x23},
    {"q", Key::q, 0x0c},
    {"r", Key::r, 0x0f},
    {"s", Key::s, 0x01},
    {"t", Key::t, 0x11},
    {"u", Key::u, 0x20},
    {"v", Key::v, 0x09},
    {"w", Key::w, 0x0d},
    {"x", Key::x, 0x07},
    {"y", Key::y, 0x10},
    {"z", Key::z, 0x06},
    {"zero", Key::zero, 0x1d},
    {"one", Key::one, 0x12},
    {"two", Key::two, 0x13},
    {"three", Key::three, 0x14},
    {"four", Key::four, 0x15},
    {"five", Key::five, 0x17},
    {"six", Key::six, 0x16},
    {"seven", Key::seven, 0x1a},
    {"eight", Key::eight, 0x1c},
    {"nine", Key::nine, 0x19},
    {"capsLock", Key::capsLock, 0x39},
    {"shift", Key::shift, 0x38},
    {"function", Key::function, 0x3f},
    {"control", Key::control, 0x3b},
    {"option", Key::option, 0x3a},
    {"command", Key::command, 0x37},
    {"rightCommand", Key::rightCommand, 0x36},
    {"rightOption", Key::rightOption, 0x3d},
    {"rightControl", Key::rightControl, 0x3e},
    {"rightShift", Key::rightShift, 0x3c},
    {"return", Key::return_, 0x24},
    {"backslash", Key::backslash, 0x2a},
    {"backtick", Key::backtick, 0x32},
    {"comma", Key::comma, 0x2b},
    {"equal", Key::equal, 0x18},
    {"minus", Key::minus, 0x1b},
    {"period", Key::period, 0x2f},
    {"quote", Key::quote, 0x27},
    {"semicolon", Key::semicolon, 0x29},
    {"slash", Key::slash, 0x2c},
    {"space", Key::space, 0x31},
    {"tab", Key::tab, 0x30},
    {"leftBracket", Key::leftBracket, 0x21},
    {"rightBracket", Key::rightBracket, 0x1e},
    {"pageUp", Key::pageUp, 0x74},
    {"pageDown", Key::pageDown, 0x79},
    {"home", Key::home, 0x73},
    {"end", Key::end, 0x77},
    {"upArrow", Key::upArrow, 0x7e},
    {"rightArrow", Key::rightArrow, 0x7c},
    {"downArrow", Key::downArrow, 0x7d},
    {"leftArrow", Key::leftArrow, 0x7b},
    {"escape", Key::escape, 0x35},
    {"delete", Key::delete_, 0x33},
    {"deleteForward", Key::deleteForward, 0x75},
    {"help", Key::help, 0x72},
    {"mute", Key::mute, 0x4a},
    {"volumeUp", Key::volumeUp, 0x48},
    {"volumeDown", Key::volumeDown, 0x49},
    {"f1", Key::f1, 0x7a},
    {"f2", Key::f2, 0x78},
    {"f3", Key::f3, 0x63},
    {"f4", Key::f4, 0x76},
    {"f5", Key::f5, 0x60},
    {"f6", Key::f6, 0x61},
    {"f7", Key::f7, 0x62},
    {"f8", Key::f8, 0x64},
    {"f9", Key::f9, 0x65},
    {"f10", Key::f10, 0x6d},
    {"f11", Key::f11, 0x67},
    {"f12", Key::f12, 0x6f},
    {"f13", Key::f13, 0x69},
    {"f14", Key::f14, 0x6b},
    {"f15", Key::f15, 0x71},
    {"f16", Key::f16, 0x6a},
    {"f17", Key::f17, 0x40},
    {"f18", Key::f18, 0x4f},
    {"f19", Key::f19, 0x50},
    {"f20", Key::f20, 0x5a},
    {"keypad0", Key::keypad0, 0x52},
    {"keypad1", Key::keypad1, 0x53},
    {"keypad2", Key::keypad2, 0x54},
    {"keypad3", Key::keypad3, 0x55},
    {"keypad4", Key::keypad4, 0x56},
    {"keypad5", Key::keypad5, 0x57},
    {"keypad6", Key::keypad6, 0x58},
    {"keypad7", Key::keypad7, 0x59},
    {"keypad8", Key::keypad8, 0x5b},
    {"keypad9", Key::keypad9, 0x5c},
    {"keypadClear", Key::keypadClear, 0x47},
    {"keypadDecimal", Key::keypadDecimal, 0x41},
    {"keypadDivide", Key::keypadDivide, 0x4b},
    {"keypadEnter", Key::keypadEnter, 0x4c},
    {"keypadEquals", Key::keypadEquals, 0x51},
    {"keypadMinus", Key::keypadMinus, 0x4e},
    {"keypadMultiply", Key::keypadMultiply, 0x43},
    {"keypadPlus", Key::keypadPlus, 0x45},
};

const std::vector<std::int64_t> functionKeyCodes = {122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                                                    103, 111, 105, 107, 113, 106, 64, 79,  80,  90};

std::vector<std::int64_t> codesOf(std::span<const Key> keys) {
    std::vector<std::int64_t> codes;
    for (const Key key : keys) {
        codes.push_back(key.rawValue());
    }
    return codes;
}

class KeyName : public ::testing::TestWithParam<NamedKey> {};

} // namespace

TEST_P(KeyName, StandsForItsVirtualKeyCode) {
    EXPECT_EQ(GetParam().key.rawValue(), GetParam().virtualKey);
    EXPECT_EQ(GetParam().key, Key(GetParam().virtualKey));
}

TEST_P(KeyName, IsOnKeyboardsHere) {
    const int code = static_cast<int>(GetParam().virtualKey);
    const auto twins = snapvane::KeyCodes::twinsOfCarbon(code);
    ASSERT_TRUE(twins);
    EXPECT_EQ(twins->carbon, code);
}

INSTANTIATE_TEST_SUITE_P(Each, KeyName, ::testing::ValuesIn(namedKeys),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Key, NamesAreOfDifferentKeys) {
    std::set<std::int64_t> codes;
    for (const NamedKey& named : namedKeys) {
        codes.insert(named.key.rawValue());
    }
    EXPECT_EQ(codes.size(), 113U);
    EXPECT_EQ(codes.size(), std::size(namedKeys));
}

TEST(Key, TellingValues) {
    EXPECT_EQ(Key(Key::a).rawValue(), 0);
    EXPECT_EQ(Key(Key::s).rawValue(), 1);
    EXPECT_EQ(Key(Key::p).rawValue(), 35);
    EXPECT_EQ(Key(Key::return_).rawValue(), 36);
    EXPECT_EQ(Key(Key::tab).rawValue(), 48);
    EXPECT_EQ(Key(Key::space).rawValue(), 49);
    EXPECT_EQ(Key(Key::delete_).rawValue(), 51);
    EXPECT_EQ(Key(Key::escape).rawValue(), 53);
    EXPECT_EQ(Key(Key::command).rawValue(), 55);
    EXPECT_EQ(Key(Key::shift).rawValue(), 56);
    EXPECT_EQ(Key(Key::capsLock).rawValue(), 57);
    EXPECT_EQ(Key(Key::option).rawValue(), 58);
    EXPECT_EQ(Key(Key::control).rawValue(), 59);
    EXPECT_EQ(Key(Key::function).rawValue(), 63);
    EXPECT_EQ(Key(Key::mute).rawValue(), 74);
    EXPECT_EQ(Key(Key::f12).rawValue(), 111);
    EXPECT_EQ(Key(Key::leftArrow).rawValue(), 123);
    EXPECT_EQ(Key(Key::upArrow).rawValue(), 126);
}

TEST(Key, AnyNumberIsAKey) {
    for (const std::int64_t number :
         {std::int64_t{-1}, std::int64_t{70'000}, INT64_MIN, INT64_MAX}) {
        EXPECT_EQ(Key(number).rawValue(), number);
        EXPECT_FALSE(Key(number).isFunctionKey());
        EXPECT_FALSE(Key(number).hasSynthesizedFunctionModifier());
    }
}

TEST(Key, IsEqualAndHashedByItsNumber) {
    EXPECT_NE(Key(Key::a), Key(Key::s));
    const std::unordered_set<Key> keys = {Key::a, Key::s, Key(0)};
    EXPECT_EQ(keys.size(), 2U);
    EXPECT_TRUE(keys.contains(Key(1)));
    EXPECT_FALSE(keys.contains(Key(2)));
}

TEST(Key, FunctionKeysAreF1ToF20) {
    EXPECT_THAT(codesOf(Key::functionKeys()), ElementsAreArray(functionKeyCodes));
}

TEST(Key, FunctionKeysAndElevenOthersAreMarkedWithFunction) {
    std::vector<std::int64_t> expected = functionKeyCodes;
    for (const std::int64_t code : {114, 117, 71, 115, 119, 116, 121, 126, 124, 125, 123}) {
        expected.push_back(code);
    }
    EXPECT_THAT(codesOf(Key::keysWithSynthesizedFunctionModifier()),
                ::testing::UnorderedElementsAreArray(expected));
}

TEST(Key, KnowsTheSetsItIsIn) {
    std::size_t functionKeys = 0;
    std::size_t marked = 0;
    for (std::int64_t code = 0; code < 256; ++code) {
        functionKeys += Key(code).isFunctionKey() ? 1U : 0U;
        marked += Key(code).hasSynthesizedFunctionModifier() ? 1U : 0U;
    }
    EXPECT_EQ(functionKeys, 20U);
    EXPECT_EQ(marked, 31U);
    EXPECT_TRUE(Key(Key::f20).isFunctionKey());
    EXPECT_FALSE(Key(Key::help).isFunctionKey());
    EXPECT_TRUE(Key(Key::help).hasSynthesizedFunctionModifier());
    EXPECT_FALSE(Key(Key::a).hasSynthesizedFunctionModifier());
}

} // namespace KeyboardShortcuts
