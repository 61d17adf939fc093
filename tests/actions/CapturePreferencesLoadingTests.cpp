// What the preferences are when the program starts with this or that file.

#include "CapturePreferencesSession.h"
#include "HomeFolder.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QRect>
#include <QSettings>

namespace snapvane {

namespace {

using testing::CapturePreferencesSession;

constexpr auto copyAction = AfterCaptureAction::copyToClipboard;
constexpr auto uploadAction = AfterCaptureAction::uploadFerrybox;
constexpr auto saveAction = AfterCaptureAction::saveToFolder;

struct FileCase {
    const char* name;
    const char* lines;
    AfterCaptureActions actions;
    bool ask;

    friend void PrintTo(const FileCase& example, std::ostream* stream) { *stream << example.lines; }
};

class CapturePreferencesFile : public ::testing::TestWithParam<FileCase> {
protected:
    void SetUp() override { m_file.write(QByteArray("[General]\n") + GetParam().lines); }

    testing::HomeFolder m_home;
    PreferencesFile m_file;
};

const FileCase emptyFile = {"Empty", "", {saveAction}, false};

const FileCase legacyModes[] = {
    {"AskMe", "afterCaptureMode=askMe\n", {saveAction}, true},
    {"Copy", "afterCaptureMode=copyToClipboard\n", {copyAction}, false},
    {"Upload", "afterCaptureMode=uploadFerrybox\n", {uploadAction}, false},
    {"Save", "afterCaptureMode=saveToFolder\n", {saveAction}, false},
    {"Unknown", "afterCaptureMode=printOnPaper\n", {saveAction}, false},
    {"OtherCase", "afterCaptureMode=AskMe\n", {saveAction}, false},
    {"Nothing", "afterCaptureMode=\n", {saveAction}, false},
    {"Number", "afterCaptureMode=1\n", {saveAction}, false},
    {"On", "afterCaptureMode=true\n", {saveAction}, false},
    {"List", "afterCaptureMode=askMe, uploadFerrybox\n", {saveAction}, false},
    {"Rectangle", "afterCaptureMode=@Rect(1 2 3 4)\n", {saveAction}, false},
    {"Invalid", "afterCaptureMode=@Invalid()\n", {saveAction}, false},
    {"Quoted", "afterCaptureMode=\"askMe\"\n", {saveAction}, true},
};

const FileCase storedActions[] = {
    {"Copy", "afterCaptureEnabledActions=copyToClipboard\n", {copyAction}, false},
    {"Two",
     "afterCaptureEnabledActions=copyToClipboard, uploadFerrybox\n",
     {copyAction, uploadAction},
     false},
    {"AllInAnyOrder",
     "afterCaptureEnabledActions=uploadFerrybox, saveToFolder, copyToClipboard\n",
     {copyAction, uploadAction, saveAction},
     false},
    {"NoList", "afterCaptureEnabledActions=@Invalid()\n", {}, false},
    {"NoText", "afterCaptureEnabledActions=\n", {}, false},
    {"NoQuotedText", "afterCaptureEnabledActions=\"\"\n", {}, false},
    {"UnknownBesideKnown",
     "afterCaptureEnabledActions=printOnPaper, saveToFolder\n",
     {saveAction},
     false},
    {"UnknownAlone", "afterCaptureEnabledActions=printOnPaper\n", {}, false},
    {"UnknownBesideUnknown", "afterCaptureEnabledActions=printOnPaper, askMe\n", {}, false},
    {"OtherCase", "afterCaptureEnabledActions=SaveToFolder, COPYTOCLIPBOARD\n", {}, false},
    {"Twice",
     "afterCaptureEnabledActions=copyToClipboard, saveToFolder, copyToClipboard\n",
     {copyAction, saveAction},
     false},
    {"Number", "afterCaptureEnabledActions=3\n", {}, false},
    {"On", "afterCaptureEnabledActions=true\n", {}, false},
    {"OneTextThatLooksLikeAList",
     "afterCaptureEnabledActions=\"copyToClipboard, saveToFolder\"\n",
     {},
     false},
    {"TextThatLooksLikeAMap",
     "afterCaptureEnabledActions=\"{copyToClipboard: true}\"\n",
     {},
     false},
    {"Rectangle", "afterCaptureEnabledActions=@Rect(1 2 3 4)\n", {}, false},
    {"EmptyListHidesTheLegacyMode",
     "afterCaptureEnabledActions=@Invalid()\nafterCaptureMode=uploadFerrybox\n",
     {},
     false},
    {"ListHidesTheLegacyModeButNotItsAsking",
     "afterCaptureEnabledActions=copyToClipboard\nafterCaptureMode=askMe\n",
     {copyAction},
     true},
    {"UnreadableHidesTheLegacyMode",
     "afterCaptureEnabledActions=7\nafterCaptureMode=uploadFerrybox\n",
     {},
     false},
};

const FileCase storedAsking[] = {
    {"On", "askMeAfterCapture=true\n", {saveAction}, true},
    {"Off", "askMeAfterCapture=false\n", {saveAction}, false},
    {"One", "askMeAfterCapture=1\n", {saveAction}, true},
    {"Zero", "askMeAfterCapture=0\n", {saveAction}, false},
    {"Yes", "askMeAfterCapture=YES\n", {saveAction}, true},
    {"OffHidesTheLegacyMode",
     "askMeAfterCapture=false\nafterCaptureMode=askMe\n",
     {saveAction},
     false},
    {"OnHidesTheLegacyMode",
     "askMeAfterCapture=true\nafterCaptureMode=uploadFerrybox\n",
     {uploadAction},
     true},
    {"TextHidesTheLegacyMode",
     "askMeAfterCapture=some text\nafterCaptureMode=askMe\n",
     {saveAction},
     false},
    {"NothingHidesTheLegacyMode",
     "askMeAfterCapture=\nafterCaptureMode=askMe\n",
     {saveAction},
     false},
    {"InvalidHidesTheLegacyMode",
     "askMeAfterCapture=@Invalid()\nafterCaptureMode=askMe\n",
     {saveAction},
     false},
    {"ListHidesTheLegacyMode",
     "askMeAfterCapture=true, true\nafterCaptureMode=askMe\n",
     {saveAction},
     false},
};

std::string nameOf(const ::testing::TestParamInfo<FileCase>& info) {
    return info.param.name;
}

} // namespace

TEST_P(CapturePreferencesFile, DecidesWhatIsEnabled) {
    EXPECT_EQ(CapturePreferencesSession(m_file).preferences.enabledActions(), GetParam().actions);
}

TEST_P(CapturePreferencesFile, DecidesWhetherTheUserIsAsked) {
    EXPECT_EQ(CapturePreferencesSession(m_file).preferences.askMeAfterCapture(), GetParam().ask);
}

TEST_P(CapturePreferencesFile, StaysAsItIs) {
    const QByteArray before = m_file.contents();
    {
        const CapturePreferencesSession session(m_file);
        (void)session.preferences.resolvedSaveFolder();
        (void)session.preferences.savedDefaultsMenuTitle();
    }
    EXPECT_EQ(m_file.contents(), before);
    EXPECT_EQ(m_file.files(), QStringList(QStringLiteral("Snapvane.conf")));
}

INSTANTIATE_TEST_SUITE_P(Fresh, CapturePreferencesFile, ::testing::Values(emptyFile), nameOf);
INSTANTIATE_TEST_SUITE_P(LegacyMode, CapturePreferencesFile, ::testing::ValuesIn(legacyModes),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Actions, CapturePreferencesFile, ::testing::ValuesIn(storedActions),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Asking, CapturePreferencesFile, ::testing::ValuesIn(storedAsking), nameOf);

namespace {

struct ValueCase {
    const char* name;
    QVariant value;

    friend void PrintTo(const ValueCase& example, std::ostream* stream) { *stream << example.name; }
};

/// Values of a type that the program does not store, written as the library writes them.
const ValueCase foreignValues[] = {
    {"NoTexts", QStringList()},
    {"NoValues", QVariantList()},
    {"Map", QVariantMap{{QStringLiteral("copyToClipboard"), true}}},
    {"EmptyMap", QVariantMap()},
    {"Number", 4.5},
    {"Rectangle", QRect(1, 2, 3, 4)},
    {"NumbersInAList", QVariantList{1, 2}},
    {"MapInAList", QVariantList{QVariantMap{{QStringLiteral("saveToFolder"), 1}}, 2}},
};

class CapturePreferencesForeignValue : public ::testing::TestWithParam<ValueCase> {
protected:
    void store(const char* key) const {
        QDir().mkpath(m_file.folder());
        QSettings settings(m_file.path(), QSettings::IniFormat);
        settings.setValue(QString::fromLatin1(key), GetParam().value);
        settings.setValue(QStringLiteral("afterCaptureMode"), QStringLiteral("uploadFerrybox"));
        settings.sync();
    }

    testing::HomeFolder m_home;
    PreferencesFile m_file;
};

} // namespace

TEST_P(CapturePreferencesForeignValue, CountsAsAnEmptyListOfActions) {
    store("afterCaptureEnabledActions");
    EXPECT_EQ(CapturePreferencesSession(m_file).preferences.enabledActions(),
              AfterCaptureActions());
}

TEST_P(CapturePreferencesForeignValue, IsNoFolder) {
    store("saveFolderSecurityBookmark");
    EXPECT_EQ(CapturePreferencesSession(m_file).preferences.resolvedSaveFolder(),
              m_home.path("Pictures/Snapvane"));
}

INSTANTIATE_TEST_SUITE_P(Each, CapturePreferencesForeignValue, ::testing::ValuesIn(foreignValues),
                         [](const auto& example) { return std::string(example.param.name); });

TEST(CapturePreferencesFresh, HaveTheDefaultsAndMakeNoFile) {
    const testing::HomeFolder home;
    const PreferencesFile file;
    const CapturePreferencesSession session(file);
    EXPECT_EQ(session.preferences.enabledActions(), AfterCaptureActions({saveAction}));
    EXPECT_FALSE(session.preferences.askMeAfterCapture());
    EXPECT_EQ(session.preferences.saveFolderDisplayPath(), home.path("Pictures/Snapvane"));
    EXPECT_FALSE(QFile::exists(file.path()));
    EXPECT_FALSE(QFile::exists(home.path("Pictures")));
}

TEST(CapturePreferencesDisplayPath, IsTheTextThatIsStored) {
    struct Case {
        const char* line;
        QString path;
    };
    const Case cases[] = {
        {"saveFolderDisplayPath=/srv/pictures\n", QStringLiteral("/srv/pictures")},
        {"saveFolderDisplayPath=\"/srv/a, b;c\"\n", QStringLiteral("/srv/a, b;c")},
        {"saveFolderDisplayPath=not there/at all\n", QStringLiteral("not there/at all")},
        {"saveFolderDisplayPath=12\n", QStringLiteral("12")},
        {"saveFolderDisplayPath=\n", QString()},
    };
    const testing::HomeFolder home;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        const PreferencesFile file;
        file.write(QByteArray("[General]\n") + c.line);
        EXPECT_EQ(CapturePreferencesSession(file).preferences.saveFolderDisplayPath(), c.path);
    }
}

TEST(CapturePreferencesDisplayPath, IsTheDefaultFoldersWhereNoTextIsStored) {
    const testing::HomeFolder home;
    for (const char* line :
         {"saveFolderDisplayPath=a, b\n", "saveFolderDisplayPath=@Invalid()\n",
          "saveFolderDisplayPath=@Rect(1 2 3 4)\n", "saveFolderSecurityBookmark=/srv\n"}) {
        SCOPED_TRACE(line);
        const PreferencesFile file;
        file.write(QByteArray("[General]\n") + line);
        EXPECT_EQ(CapturePreferencesSession(file).preferences.saveFolderDisplayPath(),
                  home.path("Pictures/Snapvane"));
    }
}

} // namespace snapvane
