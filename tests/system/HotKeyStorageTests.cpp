// The global shortcut as it is kept in the preferences file.

#include "HotKeySuite.h"

#include <QFile>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString key = u"KeyboardShortcuts_captureArea"_s;
const QString defaultText = uR"({"carbonKeyCode":35,"carbonModifiers":4608})"_s;

class HotKeyStorage : public HotKeySuite {
protected:
    void SetUp() override {
        ASSERT_TRUE(isFree(desktop()));
        QFile::remove(file());
    }

    static QString file() { return desktop().folders().path(u"config/Snapvane/Snapvane.conf"_s); }
    static QVariant stored() { return QSettings(file(), QSettings::IniFormat).value(key); }
    static void store(const QVariant& value) {
        QSettings settings(file(), QSettings::IniFormat);
        settings.setValue(key, value);
        settings.sync();
    }
    /// Checks that the agent works without the hot key; it has started then.
    static void expectCaptures(AgentProcess& agent) {
        EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
        EXPECT_TRUE(agent.waitForOverlayGone());
    }
};

TEST_F(HotKeyStorage, TheFirstStartWritesTheDefault) {
    ASSERT_FALSE(stored().isValid());
    {
        AgentProcess agent(desktop());
        EXPECT_TRUE(waitUntil([] { return stored() == defaultText; }, std::chrono::seconds(2)))
            << stored().toString().toStdString();
        expectStartsSoon(agent, std::chrono::seconds(2));
    }
    EXPECT_EQ(stored(), defaultText);
}

TEST_F(HotKeyStorage, AClearedShortcutStaysCleared) {
    store(false);
    for (int start = 0; start < 2; ++start) {
        AgentProcess agent(desktop());
        expectCaptures(agent);
        tap(hotKey);
        expectNoSelection(agent);
        EXPECT_TRUE(isFree(desktop()));
        EXPECT_FALSE(agent.loggedError()) << agent.log().toStdString();
        EXPECT_EQ(stored().toString(), u"false"_s);
    }
}

struct StoredShortcut {
    const char* what;
    const char16_t* text;
    Keys keys;
};

class StoredHotKey : public HotKeyStorage, public ::testing::WithParamInterface<StoredShortcut> {};

TEST_P(StoredHotKey, Works) {
    const QString text = QString::fromUtf16(GetParam().text);
    store(text);
    AgentProcess agent(desktop());
    expectStartsSoon(agent, std::chrono::seconds(3), GetParam().keys);
    tap(hotKey);
    expectNoSelection(agent);
    EXPECT_TRUE(isFree(desktop()));
    EXPECT_EQ(stored(), text);
}

using namespace serverKey;

INSTANTIATE_TEST_SUITE_P(
    Table, StoredHotKey,
    ::testing::Values(StoredShortcut{"ControlShiftPrintScreen",
                                     uR"({"carbonKeyCode":105,"carbonModifiers":4608})",
                                     {control, shift, printScreen}},
                      StoredShortcut{"OptionCommandF5",
                                     uR"({"carbonKeyCode":96,"carbonModifiers":2304})",
                                     {alt, super, f5}},
                      StoredShortcut{"InAnotherOrder",
                                     uR"({ "carbonModifiers": 4096, "carbonKeyCode": 35 })",
                                     {control, serverKey::p}}),
    [](const auto& row) { return std::string(row.param.what); });

struct Rubbish {
    const char* what;
    QVariant value;
};

class RubbishHotKey : public HotKeyStorage, public ::testing::WithParamInterface<Rubbish> {};

TEST_P(RubbishHotKey, RegistersNothingAndIsKept) {
    store(GetParam().value);
    const QString before = stored().toStringList().join(u'|');
    AgentProcess agent(desktop());
    expectCaptures(agent);
    openMenu();
    closeMenu();
    tap(hotKey);
    expectNoSelection(agent);
    EXPECT_TRUE(isFree(desktop()));
    EXPECT_EQ(stored().toStringList().join(u'|'), before);
}

QString shortcutText(const char* keyCode, const char* modifiers) {
    return uR"({"carbonKeyCode":%1,"carbonModifiers":%2})"_s.arg(QLatin1String(keyCode),
                                                                 QLatin1String(modifiers));
}

const std::vector<Rubbish> rubbish = {
    {"NoJson", u"not json"_s},
    {"Empty", QString()},
    {"List", QStringList{u"a"_s, u"b"_s}},
    {"ListOfNumbers", u"[35, 4608]"_s},
    {"Number", 17},
    {"True", true},
    {"HalfAShortcut", uR"({"carbonKeyCode":35})"_s},
    {"Fractions", shortcutText("35.5", "4608")},
    {"NegativeKeyCode", shortcutText("-35", "4608")},
    {"NegativeModifiers", shortcutText("35", "-4608")},
    {"KeyCodeOverThirtyTwoBits", shortcutText("4294967331", "4608")},
    {"ModifiersOverThirtyTwoBits", shortcutText("35", "4294971904")},
    {"LargestNumbers", shortcutText("9223372036854775807", "9223372036854775807")},
    {"TooLargeNumbers", shortcutText("1e300", "4608")},
    {"UnknownKeyCode", shortcutText("300", "4608")},
    {"KeyCodeOverSixteenBits", shortcutText("65571", "4608")},
    {"AllModifierBits", shortcutText("35", "4294967295")},
    {"FunctionModifier", shortcutText("35", "135680")}};

INSTANTIATE_TEST_SUITE_P(Table, RubbishHotKey, ::testing::ValuesIn(rubbish),
                         [](const auto& row) { return std::string(row.param.what); });

} // namespace

} // namespace snapvane::testing
