#include "base/UserDefaults.h"

#include "PreferencesFile.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <limits>

namespace snapvane {

namespace {

const QString key = QStringLiteral("selectionDimAmount");

QStringList list(std::initializer_list<const char*> texts) {
    QStringList result;
    for (const char* text : texts) {
        result.append(QString::fromUtf8(text));
    }
    return result;
}

} // namespace

TEST(UserDefaults, KnowsNothingOfWhatWasNeverSet) {
    const PreferencesFile file;
    const UserDefaults defaults(file.path());
    EXPECT_FALSE(defaults.contains(key));
    EXPECT_FALSE(defaults.boolean(key));
    EXPECT_EQ(defaults.number(key), 0);
    EXPECT_FALSE(defaults.string(key).has_value());
    EXPECT_FALSE(defaults.stringArray(key).has_value());
    EXPECT_FALSE(QFile::exists(file.path()));
}

TEST(UserDefaults, ReadsBooleansAsTheFileHasThem) {
    struct Case {
        const char* text;
        bool value;
    };
    const Case cases[] = {{"true", true},   {"false", false}, {"TRUE", true}, {"False", false},
                          {"YES", true},    {"yes", true},    {"NO", false},  {"1", true},
                          {"0", false},     {"2", true},      {"-1", true},   {"0.5", true},
                          {"0.0", false},   {"1.0", true},    {"", false},    {"on", false},
                          {"maybe", false}, {"  true", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const PreferencesFile file;
        file.write(QByteArray("[General]\nkey=") + c.text + "\n");
        const UserDefaults defaults(file.path());
        EXPECT_EQ(defaults.boolean(QStringLiteral("key")), c.value);
        EXPECT_TRUE(defaults.contains(QStringLiteral("key")));
    }
}

TEST(UserDefaults, KeepsBooleans) {
    for (const bool value : {true, false}) {
        SCOPED_TRACE(value);
        const PreferencesFile file;
        UserDefaults writer(file.path());
        writer.set(key, value);
        EXPECT_EQ(writer.boolean(key), value);
        const UserDefaults reader(file.path());
        EXPECT_EQ(reader.boolean(key), value);
        EXPECT_EQ(reader.number(key), value ? 1 : 0);
        EXPECT_TRUE(reader.contains(key));
    }
}

TEST(UserDefaults, KeepsNumbersToTheLastBit) {
    for (const double value : {0.0, 1.0, -1.0, 0.35, 1.0 / 3, 1e-300, 1.7976931348623157e308,
                               123456789.123456789, std::numeric_limits<double>::denorm_min()}) {
        SCOPED_TRACE(value);
        const PreferencesFile file;
        UserDefaults(file.path()).set(key, value);
        const UserDefaults reader(file.path());
        EXPECT_EQ(reader.number(key), value);
        EXPECT_EQ(reader.boolean(key), value != 0);
    }
}

TEST(UserDefaults, ReadsNumbersAsTheFileHasThem) {
    struct Case {
        const char* text;
        double value;
    };
    const Case cases[] = {{"0.25", 0.25}, {"7", 7}, {"true", 1}, {"false", 0},   {"1e-1", 0.1},
                          {"half", 0},    {"", 0},  {"0,25", 0}, {"-3.5", -3.5}, {"\"0.5\"", 0.5}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const PreferencesFile file;
        file.write(QByteArray("[General]\nkey=") + c.text + "\n");
        EXPECT_EQ(UserDefaults(file.path()).number(QStringLiteral("key")), c.value);
    }
}

TEST(UserDefaults, KeepsTexts) {
    const char* const texts[] = {"",
                                 "plain",
                                 "a, b, c",
                                 "say \"hello\"",
                                 "back\\slash",
                                 "semi;colon = and # hash",
                                 "  spaces at both ends  ",
                                 "first\nsecond\r\nthird\ttab",
                                 "\u00e4\u00f6\u00fc \u2192 \u65e5\u672c \U0001f4f7",
                                 "@Invalid()",
                                 "@ByteArray(x)",
                                 "%20 %U",
                                 "[General]",
                                 "true",
                                 "1"};
    for (const char* text : texts) {
        SCOPED_TRACE(text);
        const PreferencesFile file;
        UserDefaults writer(file.path());
        writer.set(key, QString::fromUtf8(text));
        EXPECT_EQ(writer.string(key), QString::fromUtf8(text));
        EXPECT_EQ(UserDefaults(file.path()).string(key), QString::fromUtf8(text));
    }
}

TEST(UserDefaults, KeepsLists) {
    const QStringList lists[] = {{},
                                 list({"saveToFolder"}),
                                 list({""}),
                                 list({"one, two"}),
                                 list({"copyToClipboard", "saveToFolder", "uploadFerrybox"}),
                                 list({"", "a,b", "c\"d"}),
                                 list({"@x", "\u65e5\u672c", "new\nline"})};
    for (const QStringList& value : lists) {
        SCOPED_TRACE(value.join(QLatin1Char('|')).toStdString());
        const PreferencesFile file;
        UserDefaults writer(file.path());
        writer.set(key, value);
        EXPECT_EQ(writer.stringArray(key), value);
        const UserDefaults reader(file.path());
        EXPECT_TRUE(reader.contains(key));
        ASSERT_TRUE(reader.stringArray(key).has_value());
        EXPECT_EQ(*reader.stringArray(key), value);
        EXPECT_FALSE(reader.boolean(key));
    }
}

TEST(UserDefaults, TakesATextForAListOfOneAndALongListForNoText) {
    const PreferencesFile file;
    UserDefaults writer(file.path());
    writer.set(QStringLiteral("text"), QStringLiteral("saveToFolder"));
    writer.set(QStringLiteral("list"), list({"a", "b"}));
    writer.set(QStringLiteral("none"), QStringList());
    const UserDefaults reader(file.path());
    EXPECT_EQ(reader.stringArray(QStringLiteral("text")), list({"saveToFolder"}));
    EXPECT_FALSE(reader.string(QStringLiteral("list")).has_value());
    EXPECT_FALSE(reader.string(QStringLiteral("none")).has_value());
}

TEST(UserDefaults, AnswersAboutAListOfOneAlikeBeforeAndAfterReading) {
    const PreferencesFile file;
    UserDefaults writer(file.path());
    writer.set(key, list({"saveToFolder"}));
    EXPECT_EQ(writer.string(key), UserDefaults(file.path()).string(key));
}

TEST(UserDefaults, WritesKeysAtTheTopLevelAtOnce) {
    const PreferencesFile file;
    UserDefaults defaults(file.path());
    defaults.set(QStringLiteral("askMeAfterCapture"), true);
    EXPECT_EQ(file.contents(), "[General]\naskMeAfterCapture=true\n");
    defaults.set(QStringLiteral("KeyboardShortcuts_captureArea"), QStringLiteral("x"));
    EXPECT_EQ(file.contents(),
              "[General]\nKeyboardShortcuts_captureArea=x\naskMeAfterCapture=true\n");
    defaults.remove(QStringLiteral("askMeAfterCapture"));
    EXPECT_EQ(file.contents(), "[General]\nKeyboardShortcuts_captureArea=x\n");
    EXPECT_FALSE(defaults.contains(QStringLiteral("askMeAfterCapture")));
}

TEST(UserDefaults, OverwritesValuesOfAnotherType) {
    const PreferencesFile file;
    UserDefaults defaults(file.path());
    defaults.set(key, list({"a", "b"}));
    defaults.set(key, 0.5);
    EXPECT_EQ(UserDefaults(file.path()).number(key), 0.5);
    defaults.set(key, true);
    EXPECT_TRUE(UserDefaults(file.path()).boolean(key));
}

TEST(UserDefaults, KeepsTheStandardStoreInTheConfigurationFolder) {
    UserDefaults::standard().set(key, 0.25);
    const QString path = QDir::homePath() + QStringLiteral("/.config/Snapvane/Snapvane.conf");
    EXPECT_EQ(PreferencesFile::contents(path), "[General]\nselectionDimAmount=0.25\n");
    EXPECT_EQ(&UserDefaults::standard(), &UserDefaults::standard());
}

} // namespace snapvane
