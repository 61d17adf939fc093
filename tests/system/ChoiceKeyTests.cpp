// What each key does in the window that asks about a capture, whatever keyboard it is on.

#include "ChoiceSuite.h"
#include "PngFile.h"
#include "ScreenGrab.h"
#include "Wait.h"

#include <QDateTime>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

// The server's codes of keys on an evdev keyboard; the digits in order of what they type.
constexpr xcb_keycode_t escapeKey = 9;
constexpr xcb_keycode_t returnKey = 36;
constexpr xcb_keycode_t keypadEnter = 104;
constexpr xcb_keycode_t digitRow[] = {10, 11, 12, 13, 14};
constexpr xcb_keycode_t keypad[] = {87, 88, 89, 83, 84};

constexpr ChoiceOutcome copied = {true, 0};
constexpr ChoiceOutcome refused = {false, 0};
constexpr ChoiceOutcome saved = {false, 1};
constexpr ChoiceOutcome asInTheSavedDefaults = {true, 1};

class ChoiceKeys : public ChoiceSuite {
protected:
    /// Checks that none of the keys does anything: the first key after them that does counts.
    void expectIgnored(const std::vector<Keys>& ignored, const Keys& choosing) {
        ask();
        for (const Keys& keys : ignored) {
            tap(keys);
        }
        tap(choosing);
        EXPECT_EQ(waitForOutcome(), saved);
        EXPECT_TRUE(choice().waitUntilGone());
    }
};

struct KeyCase {
    const char* what;
    Keys keys;
    ChoiceOutcome outcome;
    Keys locks = {};
};

void PrintTo(const KeyCase& row, std::ostream* out) {
    *out << row.what;
}

class ChoosingKeys : public ChoiceKeys, public ::testing::WithParamInterface<KeyCase> {};

TEST_P(ChoosingKeys, RunTheirAction) {
    for (const xcb_keycode_t lock : GetParam().locks) {
        tap({lock});
    }
    startAskingAgent();
    ask();
    tap(GetParam().keys);
    EXPECT_EQ(waitForOutcome(), GetParam().outcome);
    EXPECT_TRUE(choice().waitUntilGone());
}

const Keys numLocked = {serverKey::numLock};
const Keys capsLocked = {serverKey::capsLock};

const KeyCase plainKeys[] = {
    {"Copy", {digitRow[0]}, copied},
    {"Upload", {digitRow[1]}, refused},
    {"Save", {digitRow[2]}, saved},
    {"SavedDefaults", {digitRow[3]}, asInTheSavedDefaults},
    {"Return", {returnKey}, asInTheSavedDefaults},
};

const KeyCase keypadKeys[] = {
    {"Copy", {keypad[0]}, copied},
    {"Upload", {keypad[1]}, refused},
    {"Save", {keypad[2]}, saved},
    {"SavedDefaults", {keypad[3]}, asInTheSavedDefaults},
    {"CopyWithNumLock", {keypad[0]}, copied, numLocked},
    {"UploadWithNumLock", {keypad[1]}, refused, numLocked},
    {"SaveWithNumLock", {keypad[2]}, saved, numLocked},
    {"SavedDefaultsWithNumLock", {keypad[3]}, asInTheSavedDefaults, numLocked},
};

const KeyCase modifiedKeys[] = {
    {"Control", {serverKey::control, digitRow[0]}, copied},
    {"Alt", {serverKey::alt, digitRow[0]}, copied},
    {"Super", {serverKey::super, digitRow[0]}, copied},
    {"ControlAlt", {serverKey::control, serverKey::alt, digitRow[2]}, saved},
    {"CapsLock", {digitRow[0]}, copied, capsLocked},
    {"NumLock", {digitRow[2]}, saved, numLocked},
    {"ControlReturn", {serverKey::control, returnKey}, asInTheSavedDefaults},
    {"ShiftReturn", {serverKey::shift, returnKey}, asInTheSavedDefaults},
    {"CapsLockReturn", {returnKey}, asInTheSavedDefaults, capsLocked},
};

std::string nameOfKeys(const ::testing::TestParamInfo<KeyCase>& row) {
    return row.param.what;
}

INSTANTIATE_TEST_SUITE_P(Plain, ChoosingKeys, ::testing::ValuesIn(plainKeys), nameOfKeys);
INSTANTIATE_TEST_SUITE_P(Keypad, ChoosingKeys, ::testing::ValuesIn(keypadKeys), nameOfKeys);
INSTANTIATE_TEST_SUITE_P(Modified, ChoosingKeys, ::testing::ValuesIn(modifiedKeys), nameOfKeys);

TEST_F(ChoiceKeys, CopyPutsThePictureOnTheClipboard) {
    startAskingAgent();
    const QImage screen = grabSettledScreen(desktop().connection(), area);
    ask();
    tap({digitRow[0]});
    waitForNotice();
    const auto copy = ClipboardReader(desktop().display()).read("image/png");
    ASSERT_TRUE(copy.has_value());
    EXPECT_TRUE(readWholePng(*copy).has_value());
    EXPECT_EQ(QImage::fromData(*copy).convertToFormat(QImage::Format_RGB32), screen);
}

TEST_F(ChoiceKeys, SavedFileIsNamedByTheTimeOfTheCapture) {
    startAskingAgent();
    const QString format = u"'Snapvane 'yyyy-MM-dd HH.mm.ss'.png'"_s;
    const QString before = QDateTime::currentDateTime().toString(format);
    ask();
    const QString after = QDateTime::currentDateTime().toString(format);
    // Into another second than that of the capture.
    require("the next second",
            [&] { return QDateTime::currentDateTime().toString(format) > after; });
    tap({digitRow[2]});
    const QString name = QFileInfo(waitForPicture()).fileName();
    EXPECT_GE(name, before);
    EXPECT_LE(name, after);
}

TEST_F(ChoiceKeys, ShiftMakesAnotherCharacterOfADigit) {
    startAskingAgent();
    expectIgnored({{serverKey::shift, digitRow[0]}, {serverKey::shift, digitRow[3]}},
                  {digitRow[2]});
}

TEST_F(ChoiceKeys, OtherKeysDoNothing) {
    startAskingAgent();
    constexpr xcb_keycode_t space = 65;
    constexpr xcb_keycode_t tab = 23;
    constexpr xcb_keycode_t backspace = 22;
    constexpr xcb_keycode_t deleteKey = 119;
    expectIgnored({{keypadEnter},
                   {digitRow[4]},
                   {keypad[4]},
                   {serverKey::a},
                   {serverKey::f5},
                   {serverKey::printScreen},
                   {serverKey::control},
                   {serverKey::shift},
                   {space},
                   {backspace},
                   {deleteKey},
                   {serverKey::control, serverKey::a},
                   {tab}},
                  {digitRow[2]});
}

TEST_F(ChoiceKeys, KeypadEnterDoesNothingWithNumLockEither) {
    tap({serverKey::numLock});
    startAskingAgent();
    expectIgnored({{keypadEnter}}, {digitRow[2]});
}

class ChoiceKeysInFrench : public ChoiceKeys {
protected:
    /// Here the digits are on the upper level of their keys.
    void speakFrench() { setLayout({u"-layout"_s, u"fr"_s}); }

    /// Returns when the window has taken in whatever happened before: it answers in order.
    static void letTheWindowCatchUp() {
        injector().moveTo({20, 20});
        const QRect row = card().row(ChoiceRow::Cancel);
        const auto glass = [&row] { return grabScreen(desktop().connection(), row); };
        const QImage idle = glass();
        injector().moveTo(row.center());
        require("the row to be highlighted", [&] { return glass() != idle; });
        injector().moveTo({20, 20});
        require("the row to be idle again", [&] { return glass() == idle; });
    }
};

TEST_F(ChoiceKeysInFrench, DigitRowNeedsShift) {
    speakFrench();
    startAskingAgent();
    expectIgnored({{digitRow[0]}, {digitRow[1]}, {digitRow[3]}}, {serverKey::shift, digitRow[2]});
}

TEST_F(ChoiceKeysInFrench, CapsLockIsNoShift) {
    speakFrench();
    tap({serverKey::capsLock});
    startAskingAgent();
    expectIgnored({{digitRow[0]}}, {serverKey::shift, digitRow[2]});
}

TEST_F(ChoiceKeysInFrench, KeypadNeedsNothing) {
    speakFrench();
    startAskingAgent();
    expectIgnored({{digitRow[0]}}, {keypad[2]});
}

TEST_F(ChoiceKeysInFrench, LayoutThatChangesMeanwhileCounts) {
    startAskingAgent();
    ask();
    speakFrench();
    letTheWindowCatchUp();
    tap({digitRow[0]});
    tap({serverKey::shift, digitRow[2]});
    EXPECT_EQ(waitForOutcome(), saved);
}

TEST_F(ChoiceKeys, TabAndSpaceReachEachRow) {
    constexpr xcb_keycode_t space = 65;
    constexpr xcb_keycode_t tab = 23;
    startAskingAgent();
    ask();
    // To the third one.
    for (int i = 0; i < 3; ++i) {
        tap({tab});
    }
    tap({space});
    EXPECT_EQ(waitForOutcome(), saved);
    EXPECT_TRUE(choice().waitUntilGone());
}

TEST_F(ChoiceKeys, EscapeDiscards) {
    startAskingAgent();
    ask();
    tap({escapeKey});
    expectDiscarded();
}

TEST_F(ChoiceKeys, EscapeDiscardsWithModifiersToo) {
    startAskingAgent();
    ask();
    tap({serverKey::control, escapeKey});
    expectDiscarded();
}

TEST_F(ChoiceKeys, EscapeIsWhereTheUserHasIt) {
    setKeys({u"keycode %1 = Escape"_s.arg(serverKey::f15)});
    startAskingAgent();
    ask();
    tap({serverKey::f15});
    expectDiscarded();
}

TEST_F(ChoiceKeys, KeyInThePlaceOfEscapeDiscardsWhateverItTypes) {
    setKeys({u"keycode %1 = a"_s.arg(escapeKey)});
    startAskingAgent();
    ask();
    tap({escapeKey});
    expectDiscarded();
}

TEST_F(ChoiceKeys, OnlyTheFirstChoiceCounts) {
    startAskingAgent();
    ask();
    tap({digitRow[2]});
    tap({digitRow[0]});
    tap({escapeKey});
    EXPECT_EQ(waitForOutcome(), saved);
    EXPECT_TRUE(choice().waitUntilGone());
}

} // namespace

} // namespace snapvane::testing
