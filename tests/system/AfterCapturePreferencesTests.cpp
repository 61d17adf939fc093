// What happens after a capture under preferences files of every kind: of earlier versions, edited
// by hand, or about folders that are no longer there.

#include "AfterCaptureSuite.h"
#include "ClipboardOwner.h"
#include "Wait.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect someArea(100, 100, 200, 100);

class AfterCapturePreferences : public AfterCaptureSuite {
protected:
    static void SetUpTestSuite() { startDesktop(); }

    /// Captures, waits until all that follows is done and checks that the file says what it said.
    void captureUnder(const QByteArray& preferences) {
        writePreferences(preferences);
        const QVariantMap before = storedPreferences();
        startAgent(preferences);
        select(someArea);
        waitForNotice();
        EXPECT_TRUE(storedPreferences() == before) << "the preferences were changed";
    }
};

struct Case {
    const char* name;
    const char* preferences;
    bool saved;
    bool copied;
    bool uploadTried = false;
};

void PrintTo(const Case& row, std::ostream* stream) {
    *stream << row.name;
}

const Case cases[] = {
    {"FreshStart", "", true, false},
    {"ModeCopy", "afterCaptureMode=copyToClipboard\n", false, true},
    {"ModeUpload", "afterCaptureMode=uploadFerrybox\n", false, false, true},
    {"ModeSave", "afterCaptureMode=saveToFolder\n", true, false},
    {"ModeUnknown", "afterCaptureMode=printOut\n", true, false},
    {"ModeInOtherCase", "afterCaptureMode=CopyToClipboard\n", true, false},
    {"ModeEmpty", "afterCaptureMode=\n", true, false},
    {"ModeAList", "afterCaptureMode=copyToClipboard, uploadFerrybox\n", true, false},
    {"ModeAskMeButAskMeOff", "askMeAfterCapture=false\nafterCaptureMode=askMe\n", true, false},
    {"ActionsBeforeMode",
     "afterCaptureMode=copyToClipboard\nafterCaptureEnabledActions=saveToFolder\n", true, false},
    {"EmptyActionsBeforeMode",
     "afterCaptureMode=copyToClipboard\nafterCaptureEnabledActions=@Invalid()\n", false, false},
    {"AllActions", "afterCaptureEnabledActions=copyToClipboard, saveToFolder, uploadFerrybox\n",
     true, true, true},
    {"ActionsInAnyOrder", "afterCaptureEnabledActions=uploadFerrybox, saveToFolder\n", true, false,
     true},
    {"RepeatedAction", "afterCaptureEnabledActions=saveToFolder, copyToClipboard, saveToFolder\n",
     true, true},
    {"UnknownAmongKnown", "afterCaptureEnabledActions=printOut, saveToFolder\n", true, false},
    {"UnknownAlone", "afterCaptureEnabledActions=printOut\n", false, false},
    {"EmptyList", "afterCaptureEnabledActions=@Invalid()\n", false, false},
    {"EmptyText", "afterCaptureEnabledActions=\n", false, false},
    {"Number", "afterCaptureEnabledActions=7\n", false, false},
    {"Truth", "afterCaptureEnabledActions=true\n", false, false},
    {"Bytes", "afterCaptureEnabledActions=@ByteArray(\\x1\\xff)\n", false, false},
};

class PreferencesFiles : public AfterCapturePreferences,
                         public ::testing::WithParamInterface<Case> {};

TEST_P(PreferencesFiles, DecideWhatIsDoneAndStayAsTheyAre) {
    const Case& row = GetParam();
    const ClipboardOwner other(desktop().display());
    captureUnder(row.preferences);
    if (row.saved) {
        waitForPicture();
    }
    EXPECT_EQ(agent().savedPictures().size(), row.saved ? 1 : 0);
    EXPECT_EQ(!other.owns(), row.copied);
    EXPECT_EQ(agent().log().contains(u"Upload failed: "_s), row.uploadTried);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, PreferencesFiles, ::testing::ValuesIn(cases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(AfterCapturePreferences, ChosenFolderTakesThePicture) {
    const QString folder = desktop().folders().path(u"home/Bilder Ä, ö; ü"_s);
    QDir().mkpath(folder);
    captureUnder("saveFolderSecurityBookmark=\"" + folder.toUtf8() + "\"\n");
    EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 1);
    EXPECT_TRUE(agent().savedPictures().isEmpty());
    QDir(folder).removeRecursively();
}

struct FolderCase {
    const char* name;
    /// The value of the chosen folder; "%" stands for the home folder.
    const char* value;
};

void PrintTo(const FolderCase& row, std::ostream* stream) {
    *stream << row.name;
}

class UnusableFolders : public AfterCapturePreferences,
                        public ::testing::WithParamInterface<FolderCase> {};

TEST_P(UnusableFolders, AreReplacedByTheDefaultOne) {
    desktop().folders().write(u"home/just a file"_s, "a file");
    const QByteArray home = desktop().folders().home().toUtf8();
    const QByteArray preferences =
        "saveFolderSecurityBookmark=" + QByteArray(GetParam().value).replace('%', home) +
        "\nsaveFolderDisplayPath=/somewhere/else\n";
    captureUnder(preferences);
    EXPECT_EQ(QImage(waitForPicture()).size(), someArea.size());
    EXPECT_FALSE(QFile::exists(QString::fromUtf8(home) + u"/removed"_s));
    EXPECT_FALSE(agent().loggedError());
}

INSTANTIATE_TEST_SUITE_P(EveryKind, UnusableFolders,
                         ::testing::Values(FolderCase{"Removed", "%/removed/long ago"},
                                           FolderCase{"AFile", "%/just a file"},
                                           FolderCase{"BelowAFile", "%/just a file/folder"},
                                           FolderCase{"Relative", "Pictures"},
                                           FolderCase{"Empty", ""},
                                           FolderCase{"Nothing", "@Invalid()"},
                                           FolderCase{"AList", "%, %"}, FolderCase{"Number", "7"},
                                           FolderCase{"Bytes", "@ByteArray(\\0\\xff)"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(AfterCapturePreferences, FolderRemovedMeanwhileIsReplacedByTheDefaultOne) {
    const QString folder = desktop().folders().path(u"home/chosen"_s);
    QDir().mkpath(folder);
    startAgent("saveFolderSecurityBookmark=" + folder.toUtf8() + '\n');
    QDir(folder).removeRecursively();
    select(someArea);
    EXPECT_EQ(QImage(waitForPicture()).size(), someArea.size());
    EXPECT_FALSE(QFile::exists(folder));
    // Nothing is forgotten: once it is back, it is the chosen one.
    QDir().mkpath(folder);
    select(someArea);
    EXPECT_TRUE(waitUntil([&] { return QDir(folder).entryList(QDir::Files).size() == 1; },
                          std::chrono::seconds(5)));
    QDir(folder).removeRecursively();
}

} // namespace

} // namespace snapvane::testing
