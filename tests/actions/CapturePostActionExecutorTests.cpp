#include "actions/CapturePostActionExecutor.h"

#include "AfterCaptureFixture.h"

namespace snapvane {

namespace {

class CapturePostActionExecutorTest : public testing::AfterCaptureTest {
protected:
    void runConfigured() {
        await(CapturePostActionExecutor::runConfiguredAction(captureOf("picture"), facilities()));
    }
    void choose(PostCaptureMenuAction menuAction) {
        await(CapturePostActionExecutor::run(menuAction, captureOf("picture"), facilities()));
    }
    QByteArray savedFile() const {
        return home.contents("Pictures/Snapvane/Snapvane 2025-03-02 14.03.09.png");
    }
    /// The one notice, which is to stay for two seconds; nothing unless there is one exactly.
    std::optional<QString> onlyNotice() const {
        if (notices.size() != 1 || notices[0].duration != 2.0) {
            return std::nullopt;
        }
        return notices[0].text;
    }
};

} // namespace

TEST_F(CapturePostActionExecutorTest, SavesOnAFreshInstallation) {
    runConfigured();
    EXPECT_EQ(savedFile(), "picture");
    EXPECT_EQ(onlyNotice(), QStringLiteral("Saved to Snapvane 2025-03-02 14.03.09.png"));
    EXPECT_EQ(logged(), QStringList());
}

TEST_F(CapturePostActionExecutorTest, RunsWhatIsEnabled) {
    preferences.setEnabledActions({uploadAction, copyAction});
    runConfigured();
    EXPECT_EQ(onlyNotice(), QStringLiteral("Link copied \u00b7 Image copied"));
    EXPECT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(savedFile(), QByteArray());
}

TEST_F(CapturePostActionExecutorTest, RunsAlsoAnEmptySet) {
    preferences.setEnabledActions({});
    runConfigured();
    EXPECT_EQ(onlyNotice(), QStringLiteral("No after-capture actions selected"));
}

TEST_F(CapturePostActionExecutorTest, AsksInsteadOfRunningAnything) {
    preferences.setEnabledActions({uploadAction, saveAction, copyAction});
    preferences.setAskMeAfterCapture(true);
    runConfigured();
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].pngData, "picture");
    EXPECT_EQ(asked[0].capturedAt, captureOf("picture").capturedAt);
    EXPECT_TRUE(notices.empty());
    EXPECT_TRUE(pasteboard.writes.empty());
    EXPECT_TRUE(uploader.uploads.empty());
    EXPECT_EQ(savedFile(), QByteArray());
}

TEST_F(CapturePostActionExecutorTest, LogsAFailureOfABatchAndThrowsNothing) {
    failSaves();
    EXPECT_NO_THROW(runConfigured());
    EXPECT_EQ(logged(), QStringList(QStringLiteral(
                            "AfterCaptureBatch: Save failed: Snapvane: Not a directory")));
    EXPECT_EQ(onlyNotice(), QStringLiteral("Snapvane: Not a directory"));
}

TEST_F(CapturePostActionExecutorTest, RunsTheSavedDefaultsWhetherOrNotTheUserIsAsked) {
    preferences.setEnabledActions({uploadAction, copyAction});
    for (const bool ask : {true, false}) {
        preferences.setAskMeAfterCapture(ask);
        notices.clear();
        pasteboard.writes.clear();
        choose(PostCaptureMenuAction::runSavedDefaults);
        EXPECT_EQ(onlyNotice(), QStringLiteral("Link copied \u00b7 Image copied"));
        EXPECT_EQ(pasteboard.writes.size(), 1U);
    }
    EXPECT_TRUE(asked.empty());
}

TEST_F(CapturePostActionExecutorTest, RunsSavedDefaultsThatAreNone) {
    preferences.setEnabledActions({});
    choose(PostCaptureMenuAction::runSavedDefaults);
    EXPECT_EQ(onlyNotice(), QStringLiteral("No after-capture actions selected"));
}

TEST_F(CapturePostActionExecutorTest, CopiesTheImageWhenThatIsChosen) {
    preferences.setEnabledActions({uploadAction, saveAction});
    choose(PostCaptureMenuAction::copyToClipboard);
    EXPECT_EQ(onlyNotice(), QStringLiteral("Image copied"));
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].png, "picture");
    EXPECT_TRUE(uploader.uploads.empty());
    EXPECT_EQ(savedFile(), QByteArray());
}

TEST_F(CapturePostActionExecutorTest, CopiesForEveryOtherChoice) {
    choose(PostCaptureMenuAction::cancel);
    EXPECT_EQ(onlyNotice(), QStringLiteral("Image copied"));
    EXPECT_EQ(pasteboard.writes.size(), 1U);
}

TEST_F(CapturePostActionExecutorTest, UploadsWhenThatIsChosen) {
    preferences.setEnabledActions({copyAction, saveAction});
    choose(PostCaptureMenuAction::uploadFerrybox);
    EXPECT_EQ(onlyNotice(), QStringLiteral("Link copied"));
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].text, QStringLiteral("https://ferrybox.example/f/1"));
    EXPECT_EQ(pasteboard.writes[0].png, std::nullopt);
    EXPECT_EQ(savedFile(), QByteArray());
}

TEST_F(CapturePostActionExecutorTest, SavesWhenThatIsChosen) {
    preferences.setEnabledActions({copyAction});
    choose(PostCaptureMenuAction::saveToFolder);
    EXPECT_EQ(onlyNotice(), QStringLiteral("Saved to Snapvane 2025-03-02 14.03.09.png"));
    EXPECT_EQ(savedFile(), "picture");
    EXPECT_TRUE(pasteboard.writes.empty());
}

TEST_F(CapturePostActionExecutorTest, ResolvesTheFolderForEverySave) {
    choose(PostCaptureMenuAction::saveToFolder);
    home.makeFolder("chosen");
    preferences.setSaveFolder(home.path("chosen"));
    choose(PostCaptureMenuAction::saveToFolder);
    EXPECT_EQ(home.contents("chosen/Snapvane 2025-03-02 14.03.09.png"), "picture");
}

TEST_F(CapturePostActionExecutorTest, ShowsAndLogsTheFailureOfAChosenUpload) {
    failUploads("Ferrybox API key is not set. Add it in Settings.");
    EXPECT_NO_THROW(choose(PostCaptureMenuAction::uploadFerrybox));
    EXPECT_EQ(onlyNotice(), QStringLiteral("Ferrybox API key is not set. Add it in Settings."));
    EXPECT_EQ(logged(), QStringList(QStringLiteral("PostCapture: Post-capture action failed: "
                                                   "Ferrybox API key is not set. Add it in "
                                                   "Settings.")));
    EXPECT_TRUE(pasteboard.writes.empty());
}

TEST_F(CapturePostActionExecutorTest, ShowsAndLogsTheFailureOfAChosenSave) {
    failSaves();
    EXPECT_NO_THROW(choose(PostCaptureMenuAction::saveToFolder));
    EXPECT_EQ(onlyNotice(), QStringLiteral("Snapvane: Not a directory"));
    EXPECT_EQ(logged(), QStringList(QStringLiteral("PostCapture: Post-capture action failed: "
                                                   "Snapvane: Not a directory")));
}

TEST_F(CapturePostActionExecutorTest, SurvivesWhatIsNoException) {
    uploader.failure = std::make_exception_ptr(7);
    EXPECT_NO_THROW(choose(PostCaptureMenuAction::uploadFerrybox));
    EXPECT_EQ(onlyNotice(), QStringLiteral("The operation could not be completed."));
}

TEST_F(CapturePostActionExecutorTest, SurvivesAnUploaderThatFailsBeforeItHasBegun) {
    uploader.failsAtOnce = true;
    EXPECT_NO_THROW(choose(PostCaptureMenuAction::uploadFerrybox));
    EXPECT_EQ(onlyNotice(), QStringLiteral("not today"));
}

} // namespace snapvane
