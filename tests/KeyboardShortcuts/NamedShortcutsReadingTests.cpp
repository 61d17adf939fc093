#include "NamedShortcutsFixture.h"

namespace KeyboardShortcuts {

namespace {

using ::testing::IsEmpty;

struct StoredLine {
    const char* name;
    /// What stands behind the key in the file.
    QByteArray value;
};

void PrintTo(const StoredLine& line, std::ostream* stream) {
    *stream << line.name;
}

const StoredLine unreadable[] = {
    {"false", "false"},
    {"true", "true"},
    {"yes", "yes"},
    {"number", "35"},
    {"fraction", "0.5"},
    {"empty", ""},
    {"list", "a, b"},
    {"list_of_texts", R"("{\"carbonKeyCode\":35}", "{\"carbonModifiers\":4608}")"},
    {"text", "nonsense"},
    {"json_that_is_no_shortcut", R"("{\"carbonKeyCode\":35}")"},
    {"json_without_quoting", R"({"carbonKeyCode":35,"carbonModifiers":4608})"},
    {"json_array", "[35]"},
    {"invalid", "@Invalid()"},
};

class UnreadableShortcut : public NamedShortcutsFixture,
                           public ::testing::WithParamInterface<StoredLine> {
protected:
    void SetUp() override {
        NamedShortcutsFixture::SetUp();
        m_file.write("[General]\nKeyboardShortcuts_x=" + GetParam().value + "\n");
        m_reread = std::make_unique<snapvane::UserDefaults>(m_file.path());
        m_reader = std::make_unique<NamedShortcuts>(*m_reread, m_center);
    }

    std::unique_ptr<snapvane::UserDefaults> m_reread;
    std::unique_ptr<NamedShortcuts> m_reader;
};

} // namespace

TEST_P(UnreadableShortcut, IsNone) {
    EXPECT_EQ(m_reader->getShortcut(named("x")), std::nullopt);
}

TEST_P(UnreadableShortcut, RegistersNothingAndStaysAsItIs) {
    const QByteArray before = m_file.contents();
    m_reader->onKeyUp(named("x"), note("up"));
    m_reader->disable({named("x")});
    m_reader->enable({named("x")});
    EXPECT_THAT(m_system.registered, IsEmpty());
    EXPECT_EQ(m_file.contents(), before);
}

TEST_P(UnreadableShortcut, IsReplacedByTheNextOne) {
    m_reader->onKeyUp(named("x"), note("up"));
    m_reader->setShortcut(shortcutOf(commandA), named("x"));
    tap(commandA);
    EXPECT_THAT(m_journal, ::testing::ElementsAre("up"));
}

INSTANTIATE_TEST_SUITE_P(Each, UnreadableShortcut, ::testing::ValuesIn(unreadable),
                         [](const auto& test) { return std::string(test.param.name); });

using ReadableShortcut = NamedShortcutsFixture;

TEST_F(ReadableShortcut, IsTakenAsItStands) {
    store("x", R"( {"carbonModifiers":4609, "carbonKeyCode":35} )");
    const auto shortcut = m_shortcuts.getShortcut(named("x"));
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(shortcut->carbonKeyCode(), 35);
    EXPECT_EQ(shortcut->carbonModifiers(), 4609);
}

TEST_F(ReadableShortcut, MayBeWrittenByHand) {
    m_file.write("[General]\nKeyboardShortcuts_x="
                 "\"{\\\"carbonKeyCode\\\":0,\\\"carbonModifiers\\\":256}\"\n");
    snapvane::UserDefaults defaults(m_file.path());
    const NamedShortcuts shortcuts(defaults, m_center);
    EXPECT_EQ(shortcuts.getShortcut(named("x")), shortcutOf(commandA));
}

TEST_F(ReadableShortcut, StrangeNumbersAreNoHotKeys) {
    for (const char* text : {R"({"carbonKeyCode":-1,"carbonModifiers":256})",
                             R"({"carbonKeyCode":4294967296,"carbonModifiers":256})",
                             R"({"carbonKeyCode":35,"carbonModifiers":-1})",
                             R"({"carbonKeyCode":35,"carbonModifiers":9223372036854775807})"}) {
        store("x", text);
        m_shortcuts.onKeyUp(named("x"), note("up"));
        EXPECT_TRUE(m_shortcuts.getShortcut(named("x"))) << text;
        EXPECT_THAT(m_system.registered, IsEmpty()) << text;
        EXPECT_EQ(stored("x"), QString::fromLatin1(text));
        m_shortcuts.setShortcut(std::nullopt, named("x"));
    }
}

} // namespace KeyboardShortcuts
