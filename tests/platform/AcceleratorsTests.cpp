#include "platform/xdg/Accelerators.h"

#include "platform/xdg/UsKeys.h"

#include <QKeyCombination>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::Combination;
using ::snapvane::testing::combination;
using ::snapvane::testing::usKeyOfSymbol;
using ::testing::Optional;
using ::testing::TestWithParam;
using ::testing::ValuesIn;

constexpr std::int64_t command = CarbonModifier::command;
constexpr std::int64_t shift = CarbonModifier::shift;
constexpr std::int64_t option = CarbonModifier::option;
constexpr std::int64_t control = CarbonModifier::control;

std::optional<Combination> comparable(const std::optional<SymbolicHotKey>& shortcut) {
    return shortcut ? std::optional(combination(*shortcut)) : std::nullopt;
}

std::optional<Combination> parse(const QString& accelerator) {
    return comparable(parseAccelerator(accelerator, usKeyOfSymbol));
}

std::optional<Combination> ofQt(int combination) {
    return comparable(fromQtKey(combination, usKeyOfSymbol));
}

/// The symbol that a translation looks for a key of; nothing when it looks for none.
template <typename Translation>
std::optional<std::uint32_t> symbolLookedFor(const Translation& translation) {
    std::optional<std::uint32_t> symbol;
    translation([&symbol](std::uint32_t asked) {
        symbol = asked;
        return std::optional<int>();
    });
    return symbol;
}

struct Accelerator {
    const char* text;
    Combination expected;
};

void PrintTo(const Accelerator& accelerator, std::ostream* stream) {
    *stream << accelerator.text;
}

class Accelerators : public TestWithParam<Accelerator> {};

TEST_P(Accelerators, AreTranslated) {
    EXPECT_THAT(parse(QString::fromUtf8(GetParam().text)), Optional(GetParam().expected));
}

constexpr Accelerator modifierAccelerators[] = {
    {"a", {0, 0}},
    {"<Primary>a", {0, control}},
    {"<Control>a", {0, control}},
    {"<Ctrl>a", {0, control}},
    {"<Ctl>a", {0, control}},
    {"<Shift>a", {0, shift}},
    {"<Shft>a", {0, shift}},
    {"<Alt>a", {0, option}},
    {"<Mod1>a", {0, option}},
    {"<Super>a", {0, command}},
    {"<Mod4>a", {0, command}},
    {"<Meta>a", {0, command}},
    {"<PRIMARY><shift>a", {0, control | shift}},
    {"<super><ALT><sHiFt><ctrl>a", {0, command | option | shift | control}},
    {"<Control><Primary>a", {0, control}},
};
INSTANTIATE_TEST_SUITE_P(OfAllModifiers, Accelerators, ValuesIn(modifierAccelerators));

constexpr Accelerator keyAccelerators[] = {
    {"A", {0, 0}},
    {"<Control><Shift><Alt>R", {15, control | shift | option}},
    {"1", {18, 0}},
    {"minus", {27, 0}},
    {"MINUS", {27, 0}},
    {"Print", {105, 0}},
    {"print", {105, 0}},
    {"Page_Up", {116, 0}},
    {"Prior", {116, 0}},
    {"page_down", {121, 0}},
    {"space", {49, 0}},
    {"Tab", {48, 0}},
    {"<Shift>ISO_Left_Tab", {48, shift}},
    {"<Alt>F4", {118, option}},
    {"KP_Add", {69, 0}},
    {"KP_5", {87, 0}},
    {"XF86AudioMute", {74, 0}},
    {"xf86audiolowervolume", {73, 0}},
    {"<Super>Above_Tab", {50, command}},
    {"<Super>above_tab", {50, command}},
    {"grave", {50, 0}},
};
INSTANTIATE_TEST_SUITE_P(OfAllKindsOfKeys, Accelerators, ValuesIn(keyAccelerators));

class UntranslatableAccelerators : public TestWithParam<const char*> {};

TEST_P(UntranslatableAccelerators, AreNothing) {
    EXPECT_EQ(parse(QString::fromUtf8(GetParam())), std::nullopt);
}

constexpr const char* untranslatable[] = {
    "", "disabled", "Disabled", "<Shift>", "<Super><Alt>", "<Hyper>a", "<Mod2>a", "<Mod3>a",
    "<Mod5>a", "<Release>a", "<Shift><Release>a", "<>a", "< Shift>a", "<Shift", "<Shift a", "a>",
    "0x61", "0X61", "<Alt>0x0061", "NoSuchKey", "<Super>NoSuchKey", "a<Shift>", " a", "ab",
    // The fake keyboard types neither.
    "XF86Display", "adiaeresis"};
INSTANTIATE_TEST_SUITE_P(All, UntranslatableAccelerators, ValuesIn(untranslatable));

struct Lookup {
    const char* text;
    std::uint32_t symbol;
};

void PrintTo(const Lookup& lookup, std::ostream* stream) {
    *stream << lookup.text;
}

class AcceleratorSymbols : public TestWithParam<Lookup> {};

TEST_P(AcceleratorSymbols, AreWhatTheKeyTypesWithoutShift) {
    const auto symbol = symbolLookedFor([](const KeyOfSymbol& keyOfSymbol) {
        parseAccelerator(QString::fromUtf8(GetParam().text), keyOfSymbol);
    });
    EXPECT_THAT(symbol, Optional(GetParam().symbol));
}

constexpr Lookup lookups[] = {{"X", XKB_KEY_x},
                              {"U0041", XKB_KEY_a},
                              {"ISO_Left_Tab", XKB_KEY_Tab},
                              {"Adiaeresis", XKB_KEY_adiaeresis},
                              {"XF86Display", XKB_KEY_XF86Display},
                              {"multiply", XKB_KEY_multiply}};
INSTANTIATE_TEST_SUITE_P(All, AcceleratorSymbols, ValuesIn(lookups));

TEST(AcceleratorsTest, ThePlaceAboveTabNeedsNoSymbol) {
    const auto symbol = symbolLookedFor([](const KeyOfSymbol& keyOfSymbol) {
        EXPECT_TRUE(parseAccelerator(u"Above_Tab"_s, keyOfSymbol));
    });
    EXPECT_EQ(symbol, std::nullopt);
}

TEST(AcceleratorsTest, TheTranslationIsInForce) {
    const auto shortcut = parseAccelerator(u"<Super>a"_s, usKeyOfSymbol);
    ASSERT_TRUE(shortcut);
    EXPECT_TRUE(shortcut->isEnabled);
}

struct QtCombination {
    int combination;
    Combination expected;
};

void PrintTo(const QtCombination& combination, std::ostream* stream) {
    *stream << std::hex << combination.combination;
}

class QtCombinations : public TestWithParam<QtCombination> {};

TEST_P(QtCombinations, AreTranslated) {
    EXPECT_THAT(ofQt(GetParam().combination), Optional(GetParam().expected));
}

constexpr QtCombination modifierCombinations[] = {
    {Qt::Key_A, {0, 0}},
    {QKeyCombination(Qt::ControlModifier, Qt::Key_A).toCombined(), {0, control}},
    {QKeyCombination(Qt::ShiftModifier, Qt::Key_A).toCombined(), {0, shift}},
    {QKeyCombination(Qt::AltModifier, Qt::Key_A).toCombined(), {0, option}},
    {QKeyCombination(Qt::MetaModifier, Qt::Key_A).toCombined(), {0, command}},
    {QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier,
                     Qt::Key_A)
         .toCombined(),
     {0, control | shift | option | command}},
};
INSTANTIATE_TEST_SUITE_P(OfAllModifiers, QtCombinations, ValuesIn(modifierCombinations));

constexpr QtCombination namedKeyCombinations[] = {
    {Qt::Key_Left, {123, 0}},       {Qt::Key_Up, {126, 0}},       {Qt::Key_Right, {124, 0}},
    {Qt::Key_Down, {125, 0}},       {Qt::Key_Home, {115, 0}},     {Qt::Key_End, {119, 0}},
    {Qt::Key_PageUp, {116, 0}},     {Qt::Key_PageDown, {121, 0}}, {Qt::Key_Insert, {114, 0}},
    {Qt::Key_Delete, {117, 0}},     {Qt::Key_Backspace, {51, 0}}, {Qt::Key_Tab, {48, 0}},
    {Qt::Key_Backtab, {48, 0}},     {Qt::Key_Return, {36, 0}},    {Qt::Key_Enter, {76, 0}},
    {Qt::Key_Escape, {53, 0}},      {Qt::Key_Print, {105, 0}},    {Qt::Key_Pause, {113, 0}},
    {Qt::Key_ScrollLock, {107, 0}}, {Qt::Key_F1, {122, 0}},       {Qt::Key_F2, {120, 0}},
    {Qt::Key_F12, {111, 0}},        {Qt::Key_F20, {90, 0}},       {Qt::Key_Space, {49, 0}},
    {Qt::Key_Menu, {110, 0}},       {Qt::Key_Help, {114, 0}},     {Qt::Key_VolumeMute, {74, 0}},
    {Qt::Key_VolumeDown, {73, 0}},  {Qt::Key_VolumeUp, {72, 0}},  {Qt::Key_Z, {6, 0}},
    {Qt::Key_0, {29, 0}},           {Qt::Key_Minus, {27, 0}},     {Qt::Key_QuoteLeft, {50, 0}},
    {Qt::Key_BracketLeft, {33, 0}},
};
INSTANTIATE_TEST_SUITE_P(OfAllKindsOfKeys, QtCombinations, ValuesIn(namedKeyCombinations));

constexpr int keypad(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    return QKeyCombination(modifiers | Qt::KeypadModifier, key).toCombined();
}

constexpr QtCombination keypadCombinations[] = {
    {keypad(Qt::Key_0), {82, 0}},
    {keypad(Qt::Key_5), {87, 0}},
    {keypad(Qt::Key_9), {92, 0}},
    {keypad(Qt::Key_Plus), {69, 0}},
    {keypad(Qt::Key_Minus), {78, 0}},
    {keypad(Qt::Key_Asterisk), {67, 0}},
    {keypad(Qt::Key_Slash), {75, 0}},
    {keypad(Qt::Key_Period), {65, 0}},
    {keypad(Qt::Key_Comma), {95, 0}},
    {keypad(Qt::Key_Equal), {81, 0}},
    {keypad(Qt::Key_Enter), {76, 0}},
    {keypad(Qt::Key_Return), {76, 0}},
    {keypad(Qt::Key_Plus, Qt::MetaModifier), {69, command}},
};
INSTANTIATE_TEST_SUITE_P(OfTheKeypad, QtCombinations, ValuesIn(keypadCombinations));

class UntranslatableQtCombinations : public TestWithParam<int> {};

TEST_P(UntranslatableQtCombinations, AreNothing) {
    EXPECT_EQ(ofQt(GetParam()), std::nullopt);
}

const int untranslatableQt[] = {
    0,
    -1,
    Qt::MetaModifier,
    Qt::Key_unknown,
    Qt::Key_LaunchMail,
    Qt::Key_F21,
    QKeyCombination(Qt::GroupSwitchModifier, Qt::Key_A).toCombined(),
    QKeyCombination(Qt::MetaModifier | Qt::GroupSwitchModifier, Qt::Key_A).toCombined(),
    keypad(Qt::Key_A),
    static_cast<int>(0x80000000U | Qt::Key_A),
    0x7f, // no character
    0x9f,
    Qt::Key_Adiaeresis, // not on the fake keyboard
};
INSTANTIATE_TEST_SUITE_P(All, UntranslatableQtCombinations, ValuesIn(untranslatableQt));

struct QtLookup {
    int key;
    std::optional<std::uint32_t> symbol;
};

void PrintTo(const QtLookup& lookup, std::ostream* stream) {
    *stream << std::hex << lookup.key;
}

class QtSymbols : public TestWithParam<QtLookup> {};

TEST_P(QtSymbols, AreWhatTheKeyTypesWithoutShift) {
    const auto symbol = symbolLookedFor(
        [](const KeyOfSymbol& keyOfSymbol) { fromQtKey(GetParam().key, keyOfSymbol); });
    EXPECT_EQ(symbol, GetParam().symbol);
}

const QtLookup qtLookups[] = {{Qt::Key_Adiaeresis, XKB_KEY_adiaeresis},
                              {Qt::Key_ssharp, XKB_KEY_ssharp},
                              {Qt::Key_multiply, XKB_KEY_multiply},
                              {Qt::Key_ydiaeresis, XKB_KEY_ydiaeresis},
                              {Qt::Key_F13, XKB_KEY_F13},
                              {Qt::Key_Exclam, XKB_KEY_exclam},
                              {0x7f, std::nullopt},
                              {0x100, std::nullopt},
                              {Qt::Key_Super_L, std::nullopt}};
INSTANTIATE_TEST_SUITE_P(All, QtSymbols, ValuesIn(qtLookups));

} // namespace

} // namespace snapvane::xdg
