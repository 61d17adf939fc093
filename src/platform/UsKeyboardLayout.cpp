#include "platform/UsKeyboardLayout.h"

#include <QLatin1String>

namespace snapvane {

namespace {

// The character of each Carbon key code from 0 on; a blank where there is none. Source: the key
// caps of the ANSI keyboard whose positions HIToolbox's Events header names.
constexpr QLatin1StringView characters("asdfhgzxcv bqweryt123465=97-80]ou[ip lj'k;\\,/nm.  `");

struct KeypadKey {
    int keyCode;
    char character;
};

constexpr KeypadKey keypad[] = {{65, '.'}, {67, '*'}, {69, '+'}, {75, '/'}, {78, '-'}, {81, '='},
                                {82, '0'}, {83, '1'}, {84, '2'}, {85, '3'}, {86, '4'}, {87, '5'},
                                {88, '6'}, {89, '7'}, {91, '8'}, {92, '9'}};

} // namespace

std::optional<QString> usCharacter(std::uint16_t keyCode) {
    constexpr std::uint16_t space = 49;
    if (keyCode == space) {
        return QStringLiteral(" ");
    }
    if (keyCode < characters.size() && characters[keyCode] != QLatin1Char(' ')) {
        return QString(characters[keyCode]);
    }
    for (const KeypadKey& key : keypad) {
        if (key.keyCode == keyCode) {
            return QString(QLatin1Char(key.character));
        }
    }
    return std::nullopt;
}

} // namespace snapvane
