// Uploads that the user chooses when asked about a capture.

#include "ChoiceProbe.h"
#include "ScreenGrab.h"
#include "UploadSuite.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr char askToo[] = "\naskMeAfterCapture=true";

class ChoiceUpload : public UploadSuite {
protected:
    static ChoiceProbe choice() { return ChoiceProbe(desktop()); }

    void chooseUpload() {
        select(area);
        choice().waitForWindow();
        injector().tapKey(XK_2);
    }

    /// The window of the question is one of those that are shown until it has gone.
    static bool noticeSays(const QString& text) {
        return choice().waitUntilGone() && waitForText(text);
    }
};

TEST_F(ChoiceUpload, PutsTheLinkOnTheClipboardAndDoesNothingElse) {
    startService();
    startLoopbackAgent(QByteArray("saveToFolder, copyToClipboard") + askToo);
    const QImage screen = grabSettledScreen(desktop().connection(), area);
    chooseUpload();
    EXPECT_TRUE(noticeSays(u"Link copied"_s)) << shownTexts().join(u'\n').toStdString();
    EXPECT_EQ(clipboard().read("UTF8_STRING"), FerryboxServer::publicURL().toEncoded());
    EXPECT_FALSE(clipboard().targets().contains(u"image/png"_s));
    ASSERT_EQ(service().puts().size(), 1U);
    EXPECT_EQ(QImage::fromData(service().puts()[0].body).convertToFormat(QImage::Format_RGB32),
              screen);
    EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
}

TEST_F(ChoiceUpload, WindowGoesBeforeTheUploadIsDone) {
    startService({.presign = always(stalling())});
    startLoopbackAgent(QByteArray("saveToFolder") + askToo);
    chooseUpload();
    EXPECT_TRUE(choice().waitUntilGone());
    require("the upload", [this] { return service().presigns().size() == 1; });
    EXPECT_FALSE(noticeIsShown());
}

TEST_F(ChoiceUpload, NothingIsSentBeforeTheChoice) {
    startService();
    startLoopbackAgent(QByteArray("uploadFerrybox") + askToo);
    select(area);
    choice().waitForWindow();
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(choice().waitUntilGone());
    EXPECT_FALSE(waitUntil([this] { return service().server().connectionCount() > 0; },
                           std::chrono::milliseconds(300)));
}

class ChoiceUploadWithoutKey : public ChoiceUpload {
protected:
    static void SetUpTestSuite() { startDesktopWithEmptyKeyring(); }
};

TEST_F(ChoiceUploadWithoutKey, IsTriedAllTheSame) {
    startService();
    startLoopbackAgent(QByteArray("saveToFolder") + askToo);
    chooseUpload();
    EXPECT_TRUE(noticeSays(uR"(Ferrybox API key is not set\. Add it in Settings\.)"_s));
    EXPECT_TRUE(agent().waitForLogLine(
        uR"(\[PostCapture\] error: Post-capture action failed: Ferrybox API key is not set\. Add it in Settings\.)"_s));
    EXPECT_EQ(service().server().connectionCount(), 0);
    EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
}

} // namespace

} // namespace snapvane::testing
