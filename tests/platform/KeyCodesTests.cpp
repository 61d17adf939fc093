#include "platform/KeyCodes.h"

#include <gmock/gmock.h>

#include <linux/input-event-codes.h>

#include <map>
#include <set>

namespace snapvane::KeyCodes {

namespace {

struct Pair {
    const char* name;
    /// As HIToolbox's Events header has it.
    int carbon;
    int evdev;
    int evdevToo = 0;
};

const Pair pairs[] = {
    {"A", 0x00, KEY_A},
    {"B", 0x0b, KEY_B},
    {"C", 0x08, KEY_C},
    {"D", 0x02, KEY_D},
    {"E", 0x0e, KEY_E},
    {"F", 0x03, KEY_F},
    {"G", 0x05, KEY_G},
    {"H", 0x04, KEY_H},
    {"I", 0x22, KEY_I},
    {"J", 0x26, KEY_J},
    {"K", 0x28, KEY_K},
    {"L", 0x25, KEY_L},
    {"M", 0x2e, KEY_M},
    {"N", 0x2d, KEY_N},
    {"O", 0x1f, KEY_O},
    {"P", 0x23, KEY_P},
    {"Q", 0x0c, KEY_Q},
    {"R", 0x0f, KEY_R},
    {"S", 0x01, KEY_S},
    {"T", 0x11, KEY_T},
    {"U", 0x20, KEY_U},
    {"V", 0x09, KEY_V},
    {"W", 0x0d, KEY_W},
    {"X", 0x07, KEY_X},
    {"Y", 0x10, KEY_Y},
    {"Z", 0x06, KEY_Z},
    {"Digit0", 0x1d, KEY_0},
    {"Digit1", 0x12, KEY_1},
    {"Digit2", 0x13, KEY_2},
    {"Digit3", 0x14, KEY_3},
    {"Digit4", 0x15, KEY_4},
    {"Digit5", 0x17, KEY_5},
    {"Digit6", 0x16, KEY_6},
    {"Digit7", 0x1a, KEY_7},
    {"Digit8", 0x1c, KEY_8},
    {"Digit9", 0x19, KEY_9},
    {"CapsLock", 0x39, KEY_CAPSLOCK},
    {"Shift", 0x38, KEY_LEFTSHIFT},
    {"Function", 0x3f, KEY_FN},
    {"Control", 0x3b, KEY_LEFTCTRL},
    {"Option", 0x3a, KEY_LEFTALT},
    {"Command", 0x37, KEY_LEFTMETA},
    {"RightCommand", 0x36, KEY_RIGHTMETA},
    {"RightOption", 0x3d, KEY_RIGHTALT},
    {"RightControl", 0x3e, KEY_RIGHTCTRL},
    {"RightShift", 0x3c, KEY_RIGHTSHIFT},
    {"Return", 0x24, KEY_ENTER},
    {"Backslash", 0x2a, KEY_BACKSLASH},
    {"Backtick", 0x32, KEY_GRAVE},
    {"Comma", 0x2b, KEY_COMMA},
    {"Equal", 0x18, KEY_EQUAL},
    {"Minus", 0x1b, KEY_MINUS},
    {"Period", 0x2f, KEY_DOT},
    {"Quote", 0x27, KEY_APOSTROPHE},
    {"Semicolon", 0x29, KEY_SEMICOLON},
    {"Slash", 0x2c, KEY_SLASH},
    {"Space", 0x31, KEY_SPACE},
    {"Tab", 0x30, KEY_TAB},
    {"LeftBracket", 0x21, KEY_LEFTBRACE},
    {"RightBracket", 0x1e, KEY_RIGHTBRACE},
    {"PageUp", 0x74, KEY_PAGEUP},
    {"PageDown", 0x79, KEY_PAGEDOWN},
    {"Home", 0x73, KEY_HOME},
    {"End", 0x77, KEY_END},
    {"Up", 0x7e, KEY_UP},
    {"Right", 0x7c, KEY_RIGHT},
    {"Down", 0x7d, KEY_DOWN},
    {"Left", 0x7b, KEY_LEFT},
    {"Escape", 0x35, KEY_ESC},
    {"Delete", 0x33, KEY_BACKSPACE},
    {"ForwardDelete", 0x75, KEY_DELETE},
    {"Help", 0x72, KEY_INSERT, KEY_HELP},
    {"Mute", 0x4a, KEY_MUTE},
    {"VolumeUp", 0x48, KEY_VOLUMEUP},
    {"VolumeDown", 0x49, KEY_VOLUMEDOWN},
    {"F1", 0x7a, KEY_F1},
    {"F2", 0x78, KEY_F2},
    {"F3", 0x63, KEY_F3},
    {"F4", 0x76, KEY_F4},
    {"F5", 0x60, KEY_F5},
    {"F6", 0x61, KEY_F6},
    {"F7", 0x62, KEY_F7},
    {"F8", 0x64, KEY_F8},
    {"F9", 0x65, KEY_F9},
    {"F10", 0x6d, KEY_F10},
    {"F11", 0x67, KEY_F11},
    {"F12", 0x6f, KEY_F12},
    {"F13", 0x69, KEY_F13, KEY_SYSRQ},
    {"F14", 0x6b, KEY_F14, KEY_SCROLLLOCK},
    {"F15", 0x71, KEY_F15, KEY_PAUSE},
    {"F16", 0x6a, KEY_F16},
    {"F17", 0x40, KEY_F17},
    {"F18", 0x4f, KEY_F18},
    {"F19", 0x50, KEY_F19},
    {"F20", 0x5a, KEY_F20},
    {"Keypad0", 0x52, KEY_KP0},
    {"Keypad1", 0x53, KEY_KP1},
    {"Keypad2", 0x54, KEY_KP2},
    {"Keypad3", 0x55, KEY_KP3},
    {"Keypad4", 0x56, KEY_KP4},
    {"Keypad5", 0x57, KEY_KP5},
    {"Keypad6", 0x58, KEY_KP6},
    {"Keypad7", 0x59, KEY_KP7},
    {"Keypad8", 0x5b, KEY_KP8},
    {"Keypad9", 0x5c, KEY_KP9},
    {"KeypadClear", 0x47, KEY_NUMLOCK},
    {"KeypadDecimal", 0x41, KEY_KPDOT},
    {"KeypadDivide", 0x4b, KEY_KPSLASH},
    {"KeypadEnter", 0x4c, KEY_KPENTER},
    {"KeypadEquals", 0x51, KEY_KPEQUAL},
    {"KeypadMinus", 0x4e, KEY_KPMINUS},
    {"KeypadMultiply", 0x43, KEY_KPASTERISK},
    {"KeypadPlus", 0x45, KEY_KPPLUS},
    {"IsoSection", 0x0a, KEY_102ND},
    {"ContextualMenu", 0x6e, KEY_COMPOSE},
    {"JisYen", 0x5d, KEY_YEN},
    {"JisUnderscore", 0x5e, KEY_RO},
    {"JisKeypadComma", 0x5f, KEY_KPJPCOMMA},
    {"JisEisu", 0x66, KEY_HANJA},
    {"JisKana", 0x68, KEY_HANGEUL},
};

class KeyCodePair : public ::testing::TestWithParam<Pair> {};

} // namespace

TEST_P(KeyCodePair, IsFoundFromCarbon) {
    const auto twins = twinsOfCarbon(GetParam().carbon);
    ASSERT_TRUE(twins);
    EXPECT_EQ(twins->carbon, GetParam().carbon);
    EXPECT_EQ(twins->evdev, GetParam().evdev);
    EXPECT_EQ(twins->evdevToo, GetParam().evdevToo);
}

TEST_P(KeyCodePair, IsFoundFromEvdev) {
    EXPECT_EQ(carbonOfEvdev(GetParam().evdev), GetParam().carbon);
    if (GetParam().evdevToo != 0) {
        EXPECT_EQ(carbonOfEvdev(GetParam().evdevToo), GetParam().carbon);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, KeyCodePair, ::testing::ValuesIn(pairs),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(KeyCodes, ThereAreNoOthers) {
    EXPECT_EQ(all().size(), std::size(pairs));
}

TEST(KeyCodes, NoCodeIsInTwoPairs) {
    std::set<int> carbon;
    std::set<int> evdev;
    for (const Twins& twins : all()) {
        EXPECT_TRUE(carbon.insert(twins.carbon).second) << twins.carbon;
        EXPECT_TRUE(evdev.insert(twins.evdev).second) << twins.evdev;
        if (twins.evdevToo != 0) {
            EXPECT_TRUE(evdev.insert(twins.evdevToo).second) << twins.evdevToo;
        }
    }
}

TEST(KeyCodes, UnknownCodesHaveNoTwin) {
    for (const int carbon : {-1, 0x34, 0x42, 0x6c, 0x7f, 1'000}) {
        EXPECT_FALSE(twinsOfCarbon(carbon)) << carbon;
    }
    for (const int evdev : {-1, KEY_RESERVED, KEY_KPCOMMA, KEY_POWER, BTN_LEFT, KEY_MAX}) {
        EXPECT_FALSE(carbonOfEvdev(evdev)) << evdev;
    }
}

} // namespace snapvane::KeyCodes
