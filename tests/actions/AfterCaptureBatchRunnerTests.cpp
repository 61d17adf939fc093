#include "actions/AfterCaptureBatchRunner.h"

#include "AfterCaptureFixture.h"
#include "FileSizeLimit.h"
#include "OrdinaryUser.h"

#include <sys/stat.h>

namespace snapvane {

namespace {

const QString fileName = QStringLiteral("Snapvane 2025-03-02 14.03.09.png");
const QString linkText = QStringLiteral("https://ferrybox.example/f/1");

class BatchRunnerTest : public testing::AfterCaptureTest {
protected:
    void run(const AfterCaptureActions& actions) { run(actions, captureOf("picture")); }
    void run(const AfterCaptureActions& actions, const CaptureResult& result) {
        await(AfterCaptureBatchRunner::run(actions, result, facilities()));
    }
    QByteArray savedFile() const {
        return home.contents("Pictures/Snapvane/Snapvane 2025-03-02 14.03.09.png");
    }
};

constexpr auto copyAction = AfterCaptureAction::copyToClipboard;
constexpr auto uploadAction = AfterCaptureAction::uploadFerrybox;
constexpr auto saveAction = AfterCaptureAction::saveToFolder;

/// One batch and everything that comes of it.
struct BatchCase {
    const char* name;
    AfterCaptureActions actions;
    bool uploadFails;
    bool saveFails;
    std::vector<const char*> notices;
    std::vector<const char*> log;
    bool imageWritten;
    bool linkWritten;
    bool fileWritten;

    friend void PrintTo(const BatchCase& example, std::ostream* stream) { *stream << example.name; }
};

constexpr const char* saved = "Saved to Snapvane 2025-03-02 14.03.09.png";
constexpr const char* saveError = "Snapvane: Not a directory";
constexpr const char* uploadLog = "AfterCaptureBatch: Upload failed: No network";
constexpr const char* saveLog = "AfterCaptureBatch: Save failed: Snapvane: Not a directory";

const BatchCase batches[] = {
    {"Copy", {copyAction}, false, false, {"Image copied"}, {}, true, false, false},
    {"Upload", {uploadAction}, false, false, {"Link copied"}, {}, false, true, false},
    {"UploadCopy",
     {uploadAction, copyAction},
     false,
     false,
     {"Link copied \u00b7 Image copied"},
     {},
     true,
     true,
     false},
    {"Save", {saveAction}, false, false, {saved}, {}, false, false, true},
    {"SaveCopy",
     {saveAction, copyAction},
     false,
     false,
     {"Saved to Snapvane 2025-03-02 14.03.09.png \u00b7 Image copied"},
     {},
     true,
     false,
     true},
    {"UploadSave",
     {uploadAction, saveAction},
     false,
     false,
     {"Link copied \u00b7 Saved to Snapvane 2025-03-02 14.03.09.png"},
     {},
     false,
     true,
     true},
    {"All",
     {uploadAction, saveAction, copyAction},
     false,
     false,
     {"Link copied \u00b7 Saved to Snapvane 2025-03-02 14.03.09.png \u00b7 Image copied"},
     {},
     true,
     true,
     true},
    {"UploadFails", {uploadAction}, true, false, {"No network"}, {uploadLog}, false, false, false},
    {"UploadFailsCopy",
     {uploadAction, copyAction},
     true,
     false,
     {"No network", "Image copied"},
     {uploadLog},
     true,
     false,
     false},
    {"UploadFailsSave",
     {uploadAction, saveAction},
     true,
     false,
     {"No network", saved},
     {uploadLog},
     false,
     false,
     true},
    {"UploadFailsSaveCopy",
     {uploadAction, saveAction, copyAction},
     true,
     false,
     {"No network", "Saved to Snapvane 2025-03-02 14.03.09.png \u00b7 Image copied"},
     {uploadLog},
     true,
     false,
     true},
    {"SaveFails", {saveAction}, false, true, {saveError}, {saveLog}, false, false, false},
    {"SaveFailsCopy",
     {saveAction, copyAction},
     false,
     true,
     {saveError, "Image copied"},
     {saveLog},
     true,
     false,
     false},
    {"SaveFailsUpload",
     {uploadAction, saveAction},
     false,
     true,
     {saveError, "Link copied"},
     {saveLog},
     false,
     true,
     false},
    {"SaveFailsUploadCopy",
     {uploadAction, saveAction, copyAction},
     false,
     true,
     {saveError, "Link copied \u00b7 Image copied"},
     {saveLog},
     true,
     true,
     false},
    {"BothFail",
     {uploadAction, saveAction},
     true,
     true,
     {"No network", saveError},
     {uploadLog, saveLog},
     false,
     false,
     false},
    {"BothFailCopy",
     {uploadAction, saveAction, copyAction},
     true,
     true,
     {"No network", saveError, "Image copied"},
     {uploadLog, saveLog},
     true,
     false,
     false},
};

QStringList textsOf(const std::vector<const char*>& texts) {
    QStringList result;
    for (const char* text : texts) {
        result += QString::fromUtf8(text);
    }
    return result;
}

class BatchTest : public BatchRunnerTest, public ::testing::WithParamInterface<BatchCase> {
protected:
    void SetUp() override {
        if (GetParam().uploadFails) {
            failUploads("No network");
        }
        if (GetParam().saveFails) {
            failSaves();
        }
        run(GetParam().actions);
    }
};

} // namespace

TEST_P(BatchTest, ShowsItsNotices) {
    EXPECT_EQ(noticeTexts(), textsOf(GetParam().notices));
    for (const testing::ShownNotice& notice : notices) {
        EXPECT_EQ(notice.duration, 2.0) << notice.text.toStdString();
    }
}

TEST_P(BatchTest, LogsItsFailures) {
    EXPECT_EQ(logged(), textsOf(GetParam().log));
}

TEST_P(BatchTest, WritesTheClipboardOnceAtMost) {
    const bool anything = GetParam().imageWritten || GetParam().linkWritten;
    ASSERT_EQ(pasteboard.writes.size(), anything ? 1U : 0U);
    if (!anything) {
        return;
    }
    const PasteboardContents& contents = pasteboard.writes.front();
    EXPECT_EQ(contents.png,
              GetParam().imageWritten ? std::optional<QByteArray>("picture") : std::nullopt);
    EXPECT_EQ(contents.image.has_value(), GetParam().imageWritten);
    EXPECT_EQ(contents.text, GetParam().linkWritten ? std::optional(linkText) : std::nullopt);
    EXPECT_EQ(contents.url, GetParam().linkWritten ? std::optional(QUrl(linkText)) : std::nullopt);
}

TEST_P(BatchTest, WritesTheClipboardAfterFailuresAndBeforeItsLastNotice) {
    const std::size_t failures = GetParam().log.size();
    for (std::size_t i = 0; i < notices.size(); ++i) {
        EXPECT_EQ(notices[i].writesBefore, i < failures ? 0U : pasteboard.writes.size()) << i;
    }
}

TEST_P(BatchTest, SavesAndUploadsWhatItIsTold) {
    EXPECT_EQ(savedFile(), GetParam().fileWritten ? QByteArray("picture") : QByteArray());
    ASSERT_EQ(uploader.uploads.size(), GetParam().actions.contains(uploadAction) ? 1U : 0U);
    if (!uploader.uploads.empty()) {
        EXPECT_EQ(uploader.uploads.front().data, "picture");
        EXPECT_EQ(uploader.uploads.front().filename, fileName);
    }
}

INSTANTIATE_TEST_SUITE_P(Table, BatchTest, ::testing::ValuesIn(batches),
                         [](const auto& example) { return std::string(example.param.name); });

TEST_F(BatchRunnerTest, SaysSoWhenThereIsNothingToDo) {
    run({});
    EXPECT_EQ(noticeTexts(), QStringList(QStringLiteral("No after-capture actions selected")));
    EXPECT_EQ(notices.front().duration, 2.0);
    EXPECT_TRUE(pasteboard.writes.empty());
    EXPECT_TRUE(uploader.uploads.empty());
    EXPECT_FALSE(QFile::exists(home.path("Pictures")));
    EXPECT_EQ(logged(), QStringList());
}

TEST_F(BatchRunnerTest, HandsTheImageOverForClipboardsThatRefuseTheBytes) {
    const CaptureResult result = captureOf("picture");
    run({copyAction}, result);
    EXPECT_EQ(pasteboard.writes.at(0).image, result.image.bitmap);
}

TEST_F(BatchRunnerTest, CopiesTheLinkAsItIsEncoded) {
    uploader.link = QUrl(QStringLiteral("https://b\u00fccher.example/\u00e4 b%2Fc?x=%25"));
    run({uploadAction});
    EXPECT_EQ(pasteboard.writes.at(0).text,
              QStringLiteral("https://xn--bcher-kva.example/%C3%A4%20b%2Fc?x=%25"));
    EXPECT_EQ(pasteboard.writes.at(0).url, uploader.link);
}

TEST_F(BatchRunnerTest, SavesWhereTheUserHasChosenBefore) {
    home.makeFolder("chosen");
    preferences.setSaveFolder(home.path("chosen"));
    run({saveAction});
    EXPECT_EQ(home.contents("chosen/Snapvane 2025-03-02 14.03.09.png"), "picture");
    EXPECT_FALSE(QFile::exists(home.path("Pictures")));
}

TEST_F(BatchRunnerTest, LeavesPercentSignsInDescriptionsAlone) {
    failUploads("50%1 of %2 is %s");
    run({uploadAction});
    EXPECT_EQ(noticeTexts(), QStringList(QStringLiteral("50%1 of %2 is %s")));
    EXPECT_EQ(logged(),
              QStringList(QStringLiteral("AfterCaptureBatch: Upload failed: 50%1 of %2 is %s")));
}

TEST_F(BatchRunnerTest, SurvivesExceptionsOfAnyKind) {
    struct Case {
        std::exception_ptr failure;
        QString text;
    };
    const Case cases[] = {
        {std::make_exception_ptr(std::runtime_error("out of luck")), QStringLiteral("out of luck")},
        {std::make_exception_ptr(7), QStringLiteral("The operation could not be completed.")}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        notices.clear();
        uploader.failure = c.failure;
        run({uploadAction, copyAction});
        EXPECT_EQ(noticeTexts(), QStringList({c.text, QStringLiteral("Image copied")}));
        EXPECT_EQ(logged().last(), QStringLiteral("AfterCaptureBatch: Upload failed: ") + c.text);
    }
}

TEST_F(BatchRunnerTest, ReportsAFailureWithoutAnyText) {
    uploader.failure = std::make_exception_ptr(LocalizedError(QString()));
    run({uploadAction});
    EXPECT_EQ(notices.size(), 1U);
    ASSERT_EQ(logged().size(), 1);
    EXPECT_TRUE(logged().first().startsWith(QStringLiteral("AfterCaptureBatch: Upload failed: ")));
}

TEST_F(BatchRunnerTest, SurvivesAnUploaderThatFailsBeforeItHasBegun) {
    uploader.failsAtOnce = true;
    EXPECT_NO_THROW(run({uploadAction, copyAction}));
    EXPECT_EQ(noticeTexts(),
              QStringList({QStringLiteral("not today"), QStringLiteral("Image copied")}));
}

TEST_F(BatchRunnerTest, ReportsAFolderThatTheUserMayNotWriteTo) {
    home.makeFolder("chosen");
    preferences.setSaveFolder(home.path("chosen"));
    ASSERT_EQ(chmod(QFile::encodeName(home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(home.path("chosen")).constData(), 0555), 0);
    {
        const testing::OrdinaryUser user;
        run({saveAction});
    }
    const QString description = fileName + QStringLiteral(": Permission denied");
    EXPECT_EQ(noticeTexts(), QStringList(description));
    EXPECT_EQ(logged(),
              QStringList(QStringLiteral("AfterCaptureBatch: Save failed: ") + description));
}

TEST_F(BatchRunnerTest, ReportsAFullDiskAndStillCopies) {
    const CaptureResult result = captureOf(QByteArray(200'000, 'x'));
    {
        const testing::FileSizeLimit limit(50'000);
        run({saveAction, copyAction}, result);
    }
    const QString description = fileName + QStringLiteral(": File too large");
    EXPECT_EQ(noticeTexts(), QStringList({description, QStringLiteral("Image copied")}));
    EXPECT_EQ(logged(),
              QStringList(QStringLiteral("AfterCaptureBatch: Save failed: ") + description));
    EXPECT_EQ(pasteboard.writes.at(0).png, result.pngData);
}

TEST(DedupeHUDParts, KeepsEachTextWhereItComesFirst) {
    struct Case {
        QStringList parts;
        QStringList kept;
    };
    const auto list = [](const char* text) {
        return QString::fromUtf8(text).split(QLatin1Char('|'));
    };
    const Case cases[] = {{{}, {}},
                          {list("a"), list("a")},
                          {list("a|a"), list("a")},
                          {list("a|b|a|c|b"), list("a|b|c")},
                          {list("b|a|b"), list("b|a")},
                          {list("Link copied|link copied|Link copied "),
                           list("Link copied|link copied|Link copied ")},
                          {list("|a|"), list("|a")}};
    for (const Case& c : cases) {
        EXPECT_EQ(AfterCaptureBatchRunner::dedupeHUDParts(c.parts), c.kept);
    }
}

} // namespace snapvane
