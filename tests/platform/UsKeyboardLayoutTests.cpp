#include "platform/UsKeyboardLayout.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <map>

namespace snapvane {

namespace {

/// By Carbon key code; the codes are those of HIToolbox's Events header.
const std::map<int, char> characters = {
    {0x00, 'a'},  {0x0b, 'b'},  {0x08, 'c'}, {0x02, 'd'}, {0x0e, 'e'}, {0x03, 'f'}, {0x05, 'g'},
    {0x04, 'h'},  {0x22, 'i'},  {0x26, 'j'}, {0x28, 'k'}, {0x25, 'l'}, {0x2e, 'm'}, {0x2d, 'n'},
    {0x1f, 'o'},  {0x23, 'p'},  {0x0c, 'q'}, {0x0f, 'r'}, {0x01, 's'}, {0x11, 't'}, {0x20, 'u'},
    {0x09, 'v'},  {0x0d, 'w'},  {0x07, 'x'}, {0x10, 'y'}, {0x06, 'z'}, {0x1d, '0'}, {0x12, '1'},
    {0x13, '2'},  {0x14, '3'},  {0x15, '4'}, {0x17, '5'}, {0x16, '6'}, {0x1a, '7'}, {0x1c, '8'},
    {0x19, '9'},  {0x2a, '\\'}, {0x32, '`'}, {0x2b, ','}, {0x18, '='}, {0x1b, '-'}, {0x2f, '.'},
    {0x27, '\''}, {0x29, ';'},  {0x2c, '/'}, {0x31, ' '}, {0x21, '['}, {0x1e, ']'}, {0x52, '0'},
    {0x53, '1'},  {0x54, '2'},  {0x55, '3'}, {0x56, '4'}, {0x57, '5'}, {0x58, '6'}, {0x59, '7'},
    {0x5b, '8'},  {0x5c, '9'},  {0x41, '.'}, {0x4b, '/'}, {0x51, '='}, {0x4e, '-'}, {0x43, '*'},
    {0x45, '+'}};

std::optional<QString> expectedOf(int keyCode) {
    const auto found = characters.find(keyCode);
    return found == characters.end() ? std::nullopt
                                     : std::optional(QString(QLatin1Char(found->second)));
}

} // namespace

TEST(UsKeyboardLayout, EveryKeyTypesItsCharacterOrNothing) {
    for (int keyCode = 0; keyCode <= 0xffff; ++keyCode) {
        ASSERT_EQ(usCharacter(static_cast<std::uint16_t>(keyCode)), expectedOf(keyCode)) << keyCode;
    }
}

} // namespace snapvane
