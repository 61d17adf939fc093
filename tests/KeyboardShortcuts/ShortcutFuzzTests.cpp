#include "KeyboardShortcuts/MenuItemShortcut.h"
#include "NamedShortcutsFixture.h"
#include "selection/LogCapture.h"

#include <QAction>

#include <random>

namespace KeyboardShortcuts {

namespace {

constexpr unsigned seed = 20'240'817;

/// Makes texts that are nearly shortcuts.
class Mutator {
public:
    QByteArray next() {
        QByteArray text = samples[pick(std::size(samples))];
        const std::size_t changes = pick(4);
        for (std::size_t count = 0; count < changes; ++count) {
            change(text);
        }
        return text;
    }

private:
    static constexpr const char* samples[] = {
        R"({"carbonKeyCode":35,"carbonModifiers":4608})",
        R"({"carbonKeyCode":-1,"carbonModifiers":9223372036854775807})",
        R"({"carbonKeyCode":35.0,"carbonModifiers":1e3})",
        R"({"carbonModifiers":256,"carbonKeyCode":4294967295,"x":[{},null,true,"\u0000"]})",
        R"({"carbonKeyCode":122,"carbonModifiers":131072})",
        R"({"carbonKeyCode":65536,"carbonModifiers":-9223372036854775808})"};
    static constexpr const char* pieces[] = {
        "0",  "9", "-", ".5", "e9",      "e-9",     "true", "null", "[",    "]",    "{",  "}",
        "\"", ",", ":", "\\", "\\ud800", "\\u0000", "\xff", " ",    "1e99", "\xc3", "-0", "false"};

    std::size_t pick(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }

    void change(QByteArray& text) {
        const auto place = static_cast<qsizetype>(pick(static_cast<std::size_t>(text.size()) + 1));
        switch (pick(4)) {
        case 0:
            text.insert(place, pieces[pick(std::size(pieces))]);
            break;
        case 1: {
            const std::size_t length = 1 + pick(3);
            text.remove(place, static_cast<qsizetype>(length));
            break;
        }
        case 2:
            text.insert(place, static_cast<char>(pick(256)));
            break;
        default:
            text.truncate(place);
            break;
        }
    }

    std::mt19937 m_random{seed};
};

using ShortcutFuzz = NamedShortcutsFixture;

} // namespace

TEST_F(ShortcutFuzz, DecodedValuesAreEncodedToThemselves) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Mutator mutator;
    int decoded = 0;
    for (int round = 0; round < 20'000; ++round) {
        const QByteArray text = mutator.next();
        const auto shortcut = Shortcut::decoded(text);
        if (shortcut) {
            ++decoded;
            ASSERT_EQ(Shortcut::decoded(shortcut->encoded()), shortcut) << text.toStdString();
        }
    }
    // Both outcomes occur often, or nothing is tested.
    EXPECT_GT(decoded, 2'000);
    EXPECT_LT(decoded, 18'000);
}

TEST_F(ShortcutFuzz, WhateverIsStoredIsSurvived) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const snapvane::testing::LogCapture log;
    // As if another program had written the preferences: each of the values under a name of its
    // own.
    QByteArray file = "[General]\n";
    Mutator mutator;
    constexpr int count = 2'000;
    for (int index = 0; index < count; ++index) {
        QByteArray line = mutator.next();
        line.replace('\n', ' ').replace('\0', ' ');
        if (index % 8 != 0) {
            line = '"' + line.replace('\\', "\\\\").replace('"', "\\\"") + '"';
        }
        file += "KeyboardShortcuts_" + QByteArray::number(index) + '=' + line + '\n';
    }
    m_file.write(file);
    snapvane::UserDefaults defaults(m_file.path());
    NamedShortcuts shortcuts(defaults, m_center);
    snapvane::null::NullKeyboardLayout layout;
    int found = 0;
    for (int index = 0; index < count; ++index) {
        const Name name(QString::number(index));
        const auto shortcut = shortcuts.getShortcut(name);
        if (shortcut) {
            ++found;
            EXPECT_FALSE(shortcut->presentableDescription(layout).isEmpty());
            static_cast<void>(shortcut->menuItemWithMatchingShortcut({{}}, layout));
        }
        shortcuts.onKeyUp(name, [] {});
        QAction item;
        setShortcut(item, name, shortcuts, layout);
    }
    EXPECT_GT(found, count / 10);
    EXPECT_FALSE(m_system.registered.empty());
    shortcuts.removeAllHandlers();
    EXPECT_TRUE(m_system.registered.empty());
}

} // namespace KeyboardShortcuts
