// Batches and single actions whose uploads take their time.

#include "AfterCaptureFixture.h"
#include "actions/AfterCaptureBatchRunner.h"
#include "actions/CapturePostActionExecutor.h"

namespace snapvane {

namespace {

class AfterCaptureOverlapTest : public testing::AfterCaptureTest {
protected:
    AfterCaptureOverlapTest() { uploader.held = true; }

    QCoro::Task<> start(const AfterCaptureActions& actions, const CaptureResult& result) {
        return AfterCaptureBatchRunner::run(actions, result, facilities());
    }
    static void work() {
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }
    QString link(int number) const {
        return QStringLiteral("https://ferrybox.example/f/%1").arg(number);
    }
};

} // namespace

TEST_F(AfterCaptureOverlapTest, NothingElseHappensUntilTheUploadEnds) {
    auto batch = start({uploadAction, saveAction, copyAction}, captureOf("picture"));
    work();
    EXPECT_FALSE(batch.isReady());
    EXPECT_EQ(uploader.uploads.size(), 1U);
    EXPECT_TRUE(pasteboard.writes.empty());
    EXPECT_TRUE(notices.empty());
    EXPECT_FALSE(QFile::exists(home.path("Pictures")));

    uploader.release(0);
    await(std::move(batch));
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].png, "picture");
    EXPECT_EQ(pasteboard.writes[0].text, link(1));
    EXPECT_EQ(noticeTexts(),
              QStringList(QStringLiteral("Link copied \u00b7 Saved to Snapvane 2025-03-02 "
                                         "14.03.09.png \u00b7 Image copied")));
}

TEST_F(AfterCaptureOverlapTest, AFailureIsShownWhenItComes) {
    failUploads("No network");
    auto batch = start({uploadAction, copyAction}, captureOf("picture"));
    work();
    EXPECT_TRUE(notices.empty());
    EXPECT_EQ(logged(), QStringList());
    uploader.release(0);
    await(std::move(batch));
    EXPECT_EQ(noticeTexts(),
              QStringList({QStringLiteral("No network"), QStringLiteral("Image copied")}));
}

TEST_F(AfterCaptureOverlapTest, TwoBatchesDoNotMix) {
    auto first = start({uploadAction, saveAction}, captureOf("first", 1));
    uploader.link = QUrl(link(2));
    auto second = start({uploadAction, copyAction}, captureOf("second", 2));
    work();
    ASSERT_EQ(uploader.uploads.size(), 2U);
    EXPECT_EQ(uploader.uploads[0].data, "first");
    EXPECT_EQ(uploader.uploads[1].filename, QStringLiteral("Snapvane 2025-03-02 14.03.02.png"));

    uploader.release(1);
    await(std::move(second));
    EXPECT_FALSE(first.isReady());
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].text, link(2));
    EXPECT_EQ(pasteboard.writes[0].png, "second");
    EXPECT_EQ(noticeTexts(), QStringList(QStringLiteral("Link copied \u00b7 Image copied")));
    EXPECT_FALSE(QFile::exists(home.path("Pictures")));

    uploader.release(0);
    await(std::move(first));
    ASSERT_EQ(pasteboard.writes.size(), 2U);
    EXPECT_EQ(pasteboard.writes[1].text, link(1));
    EXPECT_EQ(pasteboard.writes[1].png, std::nullopt);
    EXPECT_EQ(noticeTexts().last(),
              QStringLiteral("Link copied \u00b7 Saved to Snapvane 2025-03-02 14.03.01.png"));
    EXPECT_EQ(home.contents("Pictures/Snapvane/Snapvane 2025-03-02 14.03.01.png"), "first");
}

TEST_F(AfterCaptureOverlapTest, AFailureOfOneBatchIsNoneOfTheOthers) {
    failUploads("No network");
    auto first = start({uploadAction}, captureOf("first"));
    uploader.failure = nullptr;
    auto second = start({uploadAction}, captureOf("second"));
    work();
    uploader.release(0);
    await(std::move(first));
    EXPECT_TRUE(pasteboard.writes.empty());
    uploader.release(1);
    await(std::move(second));
    EXPECT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(noticeTexts(),
              QStringList({QStringLiteral("No network"), QStringLiteral("Link copied")}));
}

TEST_F(AfterCaptureOverlapTest, TheFolderIsTheOneThatIsChosenWhenTheFileIsSaved) {
    auto batch = start({uploadAction, saveAction}, captureOf("picture"));
    work();
    home.makeFolder("chosen");
    preferences.setSaveFolder(home.path("chosen"));
    uploader.release(0);
    await(std::move(batch));
    EXPECT_EQ(home.contents("chosen/Snapvane 2025-03-02 14.03.09.png"), "picture");
}

TEST_F(AfterCaptureOverlapTest, TheActionsAreThoseOfTheMomentOfTheCapture) {
    preferences.setEnabledActions({uploadAction});
    auto batch = CapturePostActionExecutor::runConfiguredAction(captureOf("picture"), facilities());
    work();
    preferences.setEnabledActions({copyAction, saveAction});
    uploader.release(0);
    await(std::move(batch));
    EXPECT_EQ(noticeTexts(), QStringList(QStringLiteral("Link copied")));
}

TEST_F(AfterCaptureOverlapTest, ASingleUploadLeavesTheClipboardAloneUntilItEnds) {
    auto running = CapturePostActionExecutor::run(PostCaptureMenuAction::uploadFerrybox,
                                                  captureOf("picture"), facilities());
    work();
    EXPECT_FALSE(running.isReady());
    EXPECT_TRUE(pasteboard.writes.empty());
    uploader.release(0);
    await(std::move(running));
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].text, link(1));
}

} // namespace snapvane
