#include "KeyboardShortcuts/KeySequence.h"

#include "ShortcutPrinting.h"
#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

struct Sample {
    const char* name;
    Shortcut shortcut;
    QKeySequence sequence;
};

void PrintTo(const Sample& sample, std::ostream* stream) {
    *stream << sample.name;
}

constexpr ModifierFlags none = ModifierFlags::none;

const Sample samples[] = {
    {"letter", {Key::p, none}, QKeySequence(Qt::Key_P)},
    {"control", {Key::p, ModifierFlags::control}, QKeySequence(Qt::CTRL | Qt::Key_P)},
    {"option", {Key::p, ModifierFlags::option}, QKeySequence(Qt::ALT | Qt::Key_P)},
    {"shift", {Key::p, ModifierFlags::shift}, QKeySequence(Qt::SHIFT | Qt::Key_P)},
    {"command", {Key::p, ModifierFlags::command}, QKeySequence(Qt::META | Qt::Key_P)},
    {"control_and_shift",
     {Key::p, ModifierFlags::control | ModifierFlags::shift},
     QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P)},
    {"all_that_qt_knows",
     {Key::p, ModifierFlags(0x1e0000)},
     QKeySequence(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::META | Qt::Key_P)},
    {"function_modifier", {Key::p, ModifierFlags::function}, {}},
    {"digit", {Key::seven, ModifierFlags::control}, QKeySequence(Qt::CTRL | Qt::Key_7)},
    {"punctuation", {Key::leftBracket, none}, QKeySequence(Qt::Key_BracketLeft)},
    {"return", {Key::return_, none}, QKeySequence(Qt::Key_Return)},
    {"delete", {Key::delete_, none}, QKeySequence(Qt::Key_Backspace)},
    {"delete_forward", {Key::deleteForward, none}, QKeySequence(Qt::Key_Delete)},
    {"end", {Key::end, none}, QKeySequence(Qt::Key_End)},
    {"escape", {Key::escape, none}, QKeySequence(Qt::Key_Escape)},
    {"help", {Key::help, none}, QKeySequence(Qt::Key_Insert)},
    {"home", {Key::home, none}, QKeySequence(Qt::Key_Home)},
    {"space", {Key::space, ModifierFlags::control}, QKeySequence(Qt::CTRL | Qt::Key_Space)},
    {"tab", {Key::tab, none}, QKeySequence(Qt::Key_Tab)},
    {"page_up", {Key::pageUp, none}, QKeySequence(Qt::Key_PageUp)},
    {"page_down", {Key::pageDown, none}, QKeySequence(Qt::Key_PageDown)},
    {"up", {Key::upArrow, none}, QKeySequence(Qt::Key_Up)},
    {"right", {Key::rightArrow, none}, QKeySequence(Qt::Key_Right)},
    {"down", {Key::downArrow, none}, QKeySequence(Qt::Key_Down)},
    {"left", {Key::leftArrow, none}, QKeySequence(Qt::Key_Left)},
    {"keypad", {Key::keypad5, ModifierFlags::control}, {}},
    {"key_that_types_nothing", {Key::volumeUp, ModifierFlags::control}, {}},
    {"unknown_key", Shortcut::fromCarbon(-1, 0x100), {}},
    {"huge_key", Shortcut::fromCarbon(INT64_MAX, 0x100), {}},
};

class KeySequenceOf : public ::testing::TestWithParam<Sample> {};

} // namespace

TEST_P(KeySequenceOf, IsWhatMenusShow) {
    const snapvane::null::NullKeyboardLayout layout;
    EXPECT_EQ(keySequence(GetParam().shortcut, layout).toString(), GetParam().sequence.toString());
    EXPECT_EQ(keySequence(GetParam().shortcut, layout), GetParam().sequence);
}

INSTANTIATE_TEST_SUITE_P(Each, KeySequenceOf, ::testing::ValuesIn(samples),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(KeySequence, FunctionKeysAreTheirNumbers) {
    const snapvane::null::NullKeyboardLayout layout;
    int expected = Qt::Key_F1;
    for (const Key key : Key::functionKeys()) {
        const Shortcut shortcut(key, ModifierFlags::none);
        EXPECT_EQ(keySequence(shortcut, layout)[0].toCombined(), expected++);
    }
    EXPECT_EQ(expected, Qt::Key_F20 + 1);
}

TEST(KeySequence, FollowsTheLayout) {
    snapvane::null::NullKeyboardLayout layout;
    layout.keys = [](std::uint16_t) { return std::optional(QStringLiteral("\u00fc")); };
    EXPECT_EQ(keySequence(Shortcut(Key::leftBracket, ModifierFlags::control), layout).toString(),
              QStringLiteral("Ctrl+\u00dc"));
}

/// Its upper case is two letters, neither of which is on the key.
TEST(KeySequence, SharpSStaysTheKeyThatItIs) {
    snapvane::null::NullKeyboardLayout layout;
    layout.keys = [](std::uint16_t) { return std::optional(QStringLiteral("\u00df")); };
    EXPECT_EQ(keySequence(Shortcut(Key::minus, ModifierFlags::control), layout),
              QKeySequence(Qt::CTRL | Qt::Key_ssharp));
}

} // namespace KeyboardShortcuts
