// What the notice after a capture says, and for how long.

#include "AfterCaptureSuite.h"
#include "ClipboardOwner.h"
#include "NoticeText.h"
#include "Wait.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr QRect someArea(100, 100, 200, 100);

constexpr char noKey[] = R"(Ferrybox API key is not set\. Add it in Settings\.)";
constexpr char noFolder[] = R"(Snapvane: Not a directory)";
constexpr char saved[] = R"(Saved to Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png)";
constexpr char savedAndCopied[] =
    R"(Saved to Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png · Image copied)";
constexpr char imageCopied[] = "Image copied";

struct Case {
    const char* name;
    const char* actions;
    /// Whether a file lies where the folder for pictures should be.
    bool folderBlocked = false;
    /// What the log says of failures, in order: the texts of notices, soon replaced or not.
    QStringList failures;
    /// The notice that stays, as a regular expression.
    QString notice;
};

void PrintTo(const Case& row, std::ostream* stream) {
    *stream << row.name;
}

const QString uploadFailed = u"Upload failed: "_s + QLatin1String(noKey);
const QString saveFailed = u"Save failed: "_s + QLatin1String(noFolder);

/// Everything that can come of a capture while nothing can be uploaded.
const Case cases[] = {
    {"Copy", "copyToClipboard", false, {}, QLatin1String(imageCopied)},
    {"Save", "saveToFolder", false, {}, QLatin1String(saved)},
    {"SaveCopy", "copyToClipboard, saveToFolder", false, {}, QString::fromUtf8(savedAndCopied)},
    {"Upload", "uploadFerrybox", false, {uploadFailed}, QLatin1String(noKey)},
    {"UploadCopy",
     "copyToClipboard, uploadFerrybox",
     false,
     {uploadFailed},
     QLatin1String(imageCopied)},
    {"UploadSave", "saveToFolder, uploadFerrybox", false, {uploadFailed}, QLatin1String(saved)},
    {"UploadSaveCopy",
     "copyToClipboard, saveToFolder, uploadFerrybox",
     false,
     {uploadFailed},
     QString::fromUtf8(savedAndCopied)},
    {"SaveFails", "saveToFolder", true, {saveFailed}, QLatin1String(noFolder)},
    {"SaveFailsCopy",
     "copyToClipboard, saveToFolder",
     true,
     {saveFailed},
     QLatin1String(imageCopied)},
    {"UploadAndSaveFail",
     "saveToFolder, uploadFerrybox",
     true,
     {uploadFailed, saveFailed},
     QLatin1String(noFolder)},
    {"UploadAndSaveFailCopy",
     "copyToClipboard, saveToFolder, uploadFerrybox",
     true,
     {uploadFailed, saveFailed},
     QLatin1String(imageCopied)},
    {"NothingSelected", "@Invalid()", false, {}, u"No after-capture actions selected"_s},
};

class NoticeTexts : public AfterCaptureSuite, public ::testing::WithParamInterface<Case> {
protected:
    static void SetUpTestSuite() {
        startDesktop();
        s_text = std::make_unique<NoticeText>(desktop());
    }

    static void TearDownTestSuite() {
        s_text.reset();
        AfterCaptureSuite::TearDownTestSuite();
    }

    static QStringList shownTexts() { return s_text->shown(); }

private:
    static std::unique_ptr<NoticeText> s_text;
};

std::unique_ptr<NoticeText> NoticeTexts::s_text;

/// Whether each text matches its expression, as a whole and in this order.
::testing::AssertionResult match(const QStringList& texts, const QStringList& expressions) {
    bool same = texts.size() == expressions.size();
    for (qsizetype i = 0; same && i < texts.size(); ++i) {
        const QRegularExpression expression(QRegularExpression::anchoredPattern(expressions[i]));
        same = expression.match(texts[i]).hasMatch();
    }
    if (same) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "\"" << texts.join(u"\", \""_s).toStdString() << "\" instead of \""
           << expressions.join(u"\", \""_s).toStdString() << '"';
}

/// What the category that reports failed steps has logged.
QStringList loggedFailures(const QString& log) {
    const QString start = u"[AfterCaptureBatch] error: "_s;
    QStringList texts;
    for (const QString& line : log.split(u'\n')) {
        if (line.startsWith(start)) {
            texts << line.mid(start.size());
        }
    }
    return texts;
}

TEST_P(NoticeTexts, LastTextStaysAndFailuresAreLoggedInOrder) {
    const Case& row = GetParam();
    if (row.folderBlocked) {
        desktop().folders().write(u"home/Pictures/Snapvane"_s, "not a folder");
    }
    AgentOptions options;
    options.variables = {{QLatin1String(NoticeText::switchVariable), u"1"_s}};
    startAgent(actionsPreference(row.actions), options);
    select(someArea);
    waitForNotice();
    // What is replaced at once may still be found for a moment.
    waitUntil([&] { return match(shownTexts(), {row.notice}); }, std::chrono::seconds(1));
    EXPECT_TRUE(match(shownTexts(), {row.notice}));
    EXPECT_TRUE(match(loggedFailures(agent().log()), row.failures));
    // Long enough for a text that should not follow.
    pause(std::chrono::milliseconds(600));
    EXPECT_TRUE(match(shownTexts(), {row.notice}));
    EXPECT_TRUE(match(loggedFailures(agent().log()), row.failures));
}

INSTANTIATE_TEST_SUITE_P(EveryOutcome, NoticeTexts, ::testing::ValuesIn(cases),
                         [](const auto& row) { return std::string(row.param.name); });

class NoticeTime : public AfterCaptureSuite {
protected:
    static void SetUpTestSuite() { startDesktop(); }

    /// From `since` until the notice, which is shown, has gone.
    static double secondsUntilGone(Clock::time_point since) {
        require(
            "the notice to go", [] { return !noticeIsShown(); }, std::chrono::seconds(6));
        return Seconds(Clock::now() - since).count();
    }
};

constexpr double soonest = 1.9;
const double latest = 2.0 + slowness();

TEST_F(NoticeTime, StaysForTwoSeconds) {
    startAgent(actionsPreference("copyToClipboard"));
    select(someArea);
    waitForNotice();
    const double seconds = secondsUntilGone(Clock::now());
    EXPECT_GE(seconds, soonest);
    EXPECT_LE(seconds, latest);
}

TEST_F(NoticeTime, FailureStaysAsLong) {
    startAgent(actionsPreference("uploadFerrybox"));
    select(someArea);
    waitForNotice();
    const double seconds = secondsUntilGone(Clock::now());
    EXPECT_GE(seconds, soonest);
    EXPECT_LE(seconds, latest);
}

TEST_F(NoticeTime, SecondCaptureStartsItAnew) {
    startAgent(actionsPreference("saveToFolder"));
    select(someArea);
    const QString first = waitForPicture();
    waitForNotice();
    const auto shown = Clock::now();
    // Another second, for another name.
    pause(std::chrono::milliseconds(1100));
    ASSERT_TRUE(noticeIsShown());
    select(someArea);
    waitForPicture({first});
    const auto second = Clock::now();
    ASSERT_LT(Seconds(second - shown).count(), soonest) << "too late to say anything";
    const double seconds = secondsUntilGone(second);
    EXPECT_GE(seconds, soonest);
    EXPECT_LE(seconds, latest);
}

TEST_F(NoticeTime, CancelledSelectionShowsNone) {
    startAgent(actionsPreference("copyToClipboard"));
    const ClipboardOwner other(desktop().display());
    agent().activateAction(u"capture-area"_s);
    agent().waitForOverlay();
    injector().click({500, 500});
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_FALSE(waitUntil([] { return noticeIsShown(); }, std::chrono::milliseconds(500)));
    EXPECT_TRUE(other.owns());
}

} // namespace

} // namespace snapvane::testing
