#include "platform/KeyCodes.h"

#include <algorithm>
#include <array>

namespace snapvane::KeyCodes {

namespace {

// Carbon codes: the kVK constants of HIToolbox's Events header. Evdev codes: the KEY constants of
// Linux' input-event-codes.h. Two codes belong together when keyboards report both for the same
// usage of the USB HID usage tables (page 7); from there come the second keys as well: Print
// Screen, Scroll Lock and Pause stand where Carbon's keyboards have F13, F14 and F15, and Insert
// where they have Help.
constexpr std::array table = {
    // Letters
    Twins{0, 30},  // A
    Twins{1, 31},  // S
    Twins{2, 32},  // D
    Twins{3, 33},  // F
    Twins{4, 35},  // H
    Twins{5, 34},  // G
    Twins{6, 44},  // Z
    Twins{7, 45},  // X
    Twins{8, 46},  // C
    Twins{9, 47},  // V
    Twins{11, 48}, // B
    Twins{12, 16}, // Q
    Twins{13, 17}, // W
    Twins{14, 18}, // E
    Twins{15, 19}, // R
    Twins{16, 21}, // Y
    Twins{17, 20}, // T
    Twins{31, 24}, // O
    Twins{32, 22}, // U
    Twins{34, 23}, // I
    Twins{35, 25}, // P
    Twins{37, 38}, // L
    Twins{38, 36}, // J
    Twins{40, 37}, // K
    Twins{45, 49}, // N
    Twins{46, 50}, // M
    // Digits
    Twins{18, 2},  // 1
    Twins{19, 3},  // 2
    Twins{20, 4},  // 3
    Twins{21, 5},  // 4
    Twins{23, 6},  // 5
    Twins{22, 7},  // 6
    Twins{26, 8},  // 7
    Twins{28, 9},  // 8
    Twins{25, 10}, // 9
    Twins{29, 11}, // 0
    // Punctuation
    Twins{27, 12}, // minus
    Twins{24, 13}, // equal
    Twins{33, 26}, // left bracket
    Twins{30, 27}, // right bracket
    Twins{42, 43}, // backslash
    Twins{41, 39}, // semicolon
    Twins{39, 40}, // quote
    Twins{50, 41}, // backtick
    Twins{43, 51}, // comma
    Twins{47, 52}, // period
    Twins{44, 53}, // slash
    Twins{10, 86}, // the key beside the left Shift of European keyboards
    // Editing
    Twins{36, 28},        // return
    Twins{48, 15},        // tab
    Twins{49, 57},        // space
    Twins{51, 14},        // delete
    Twins{53, 1},         // escape
    Twins{117, 111},      // forward delete
    Twins{114, 110, 138}, // help: Insert, Help
    Twins{110, 127},      // menu
    // Navigation
    Twins{115, 102}, // home
    Twins{119, 107}, // end
    Twins{116, 104}, // page up
    Twins{121, 109}, // page down
    Twins{126, 103}, // up
    Twins{124, 106}, // right
    Twins{125, 108}, // down
    Twins{123, 105}, // left
    // Modifiers
    Twins{57, 58},  // caps lock
    Twins{56, 42},  // shift
    Twins{60, 54},  // right shift
    Twins{59, 29},  // control
    Twins{62, 97},  // right control
    Twins{58, 56},  // option
    Twins{61, 100}, // right option
    Twins{55, 125}, // command
    Twins{54, 126}, // right command
    Twins{63, 464}, // function
    // Sound
    Twins{74, 113}, // mute
    Twins{72, 115}, // volume up
    Twins{73, 114}, // volume down
    // Function keys
    Twins{122, 59},       // F1
    Twins{120, 60},       // F2
    Twins{99, 61},        // F3
    Twins{118, 62},       // F4
    Twins{96, 63},        // F5
    Twins{97, 64},        // F6
    Twins{98, 65},        // F7
    Twins{100, 66},       // F8
    Twins{101, 67},       // F9
    Twins{109, 68},       // F10
    Twins{103, 87},       // F11
    Twins{111, 88},       // F12
    Twins{105, 183, 99},  // F13: F13, Print Screen
    Twins{107, 184, 70},  // F14: F14, Scroll Lock
    Twins{113, 185, 119}, // F15: F15, Pause
    Twins{106, 186},      // F16
    Twins{64, 187},       // F17
    Twins{79, 188},       // F18
    Twins{80, 189},       // F19
    Twins{90, 190},       // F20
    // Keypad
    Twins{82, 82},  // 0
    Twins{83, 79},  // 1
    Twins{84, 80},  // 2
    Twins{85, 81},  // 3
    Twins{86, 75},  // 4
    Twins{87, 76},  // 5
    Twins{88, 77},  // 6
    Twins{89, 71},  // 7
    Twins{91, 72},  // 8
    Twins{92, 73},  // 9
    Twins{71, 69},  // clear, which stands where Num Lock does
    Twins{65, 83},  // decimal
    Twins{75, 98},  // divide
    Twins{76, 96},  // enter
    Twins{81, 117}, // equals
    Twins{78, 74},  // minus
    Twins{67, 55},  // multiply
    Twins{69, 78},  // plus
    // Japanese keyboards
    Twins{93, 124},  // yen
    Twins{94, 89},   // underscore
    Twins{95, 95},   // keypad comma
    Twins{102, 123}, // Eisu
    Twins{104, 122}, // Kana
};

} // namespace

std::span<const Twins> all() {
    return table;
}

std::optional<Twins> twinsOfCarbon(int carbonKeyCode) {
    const auto found = std::ranges::find(table, carbonKeyCode, &Twins::carbon);
    return found == table.end() ? std::nullopt : std::optional(*found);
}

std::optional<int> carbonOfEvdev(int evdevCode) {
    const auto found = std::ranges::find_if(table, [evdevCode](const Twins& twins) {
        return evdevCode != 0 && (twins.evdev == evdevCode || twins.evdevToo == evdevCode);
    });
    return found == table.end() ? std::nullopt : std::optional(found->carbon);
}

} // namespace snapvane::KeyCodes
