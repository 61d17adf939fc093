// The actions that copy and upload.

#include "AfterCaptureFixture.h"
#include "actions/CopyToClipboardCaptureAction.h"
#include "actions/FerryboxUploadCaptureAction.h"

namespace snapvane {

namespace {

class CaptureActionsTest : public testing::AfterCaptureTest {
protected:
    std::optional<QString> copy(const CaptureResult& result) {
        CopyToClipboardCaptureAction action(pasteboard);
        return await(action.perform(result));
    }
    std::optional<QString> upload(const CaptureResult& result) {
        FerryboxUploadCaptureAction action(uploader, pasteboard);
        return await(action.perform(result));
    }
};

} // namespace

TEST_F(CaptureActionsTest, KnowTheirIdentifiers) {
    EXPECT_EQ(CopyToClipboardCaptureAction(pasteboard).id(), QStringLiteral("copy-to-clipboard"));
    EXPECT_EQ(FerryboxUploadCaptureAction(uploader, pasteboard).id(),
              QStringLiteral("ferrybox-upload"));
}

TEST_F(CaptureActionsTest, CopyingPutsThePictureAloneOnTheClipboard) {
    const CaptureResult result = captureOf("picture");
    EXPECT_EQ(copy(result), QStringLiteral("Image copied"));
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].png, "picture");
    EXPECT_EQ(pasteboard.writes[0].image, result.image.bitmap);
    EXPECT_EQ(pasteboard.writes[0].text, std::nullopt);
    EXPECT_EQ(pasteboard.writes[0].url, std::nullopt);
}

TEST_F(CaptureActionsTest, CopyingTheEmptyCaptureIsNoFailure) {
    EXPECT_EQ(copy({}), QStringLiteral("Image copied"));
    EXPECT_EQ(pasteboard.writes.size(), 1U);
}

TEST_F(CaptureActionsTest, UploadingPutsTheLinkAloneOnTheClipboard) {
    EXPECT_EQ(upload(captureOf("picture")), QStringLiteral("Link copied"));
    ASSERT_EQ(uploader.uploads.size(), 1U);
    EXPECT_EQ(uploader.uploads[0].data, "picture");
    EXPECT_EQ(uploader.uploads[0].filename, QStringLiteral("Snapvane 2025-03-02 14.03.09.png"));
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].text, QStringLiteral("https://ferrybox.example/f/1"));
    EXPECT_EQ(pasteboard.writes[0].url, uploader.link);
    EXPECT_EQ(pasteboard.writes[0].png, std::nullopt);
    EXPECT_EQ(pasteboard.writes[0].image, std::nullopt);
}

TEST_F(CaptureActionsTest, UploadingThrowsWhatTheUploaderThrew) {
    failUploads("No network");
    EXPECT_THROW(upload(captureOf("picture")), LocalizedError);
    EXPECT_TRUE(pasteboard.writes.empty());
    uploader.failure = std::make_exception_ptr(7);
    EXPECT_THROW(upload(captureOf("picture")), int);
}

} // namespace snapvane
