// Uploads whose key is in a locked keyring.

#include "UploadSuite.h"
#include "Wait.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

/// A keyring of its own for each test: the last one's may be unlocked by now, or gone, since it
/// does not always survive a program that leaves while it asks.
class LockedKeyring : public UploadSuite {
protected:
    static void SetUpTestSuite() { startDesktopWithEmptyKeyring(); }

    void setUpWith(KeyringUser user) {
        UploadSuite::SetUp();
        restartKeyring(user);
        storeKey();
        SecretServiceClient(desktop().busAddress()).lockDefaultCollection();
        startService();
        startLoopbackAgent("saveToFolder, uploadFerrybox");
    }
};

class UploadUnlocked : public LockedKeyring {
protected:
    void SetUp() override { setUpWith(KeyringUser::Unlocks); }
};

TEST_F(UploadUnlocked, UsesTheKey) {
    select(area);
    EXPECT_TRUE(waitForText(u"Link copied \u00b7 Saved to .*"_s));
    ASSERT_EQ(service().presigns().size(), 1U);
    EXPECT_EQ(service().presigns()[0].header("X-API-Key"), key);
}

class UploadRefused : public LockedKeyring {
protected:
    void SetUp() override { setUpWith(KeyringUser::Refuses); }
};

TEST_F(UploadRefused, HasNoKeyAndSavesThePicture) {
    select(area);
    waitForPicture();
    EXPECT_TRUE(agent().waitForLogLine(uR"(Upload failed: Ferrybox API key is not set\.)"_s));
    EXPECT_EQ(service().server().connectionCount(), 0);
}

class UploadUnanswered : public LockedKeyring {
protected:
    void SetUp() override { setUpWith(KeyringUser::Ignores); }

    /// Starts an upload that cannot go on.
    void captureUntilAsked() {
        select(area);
        require("the question for the password", [] { return keyring().isAsking(); });
        EXPECT_TRUE(agent().savedPictures().isEmpty());
    }
};

TEST_F(UploadUnanswered, DoesNotKeepTheNextCaptureWaiting) {
    captureUntilAsked();
    // Throws when the selection does not open.
    select({300, 300, 50, 40});
    EXPECT_EQ(service().server().connectionCount(), 0);
}

TEST_F(UploadUnanswered, EndsWithTheProgramAndThePictureIsSaved) {
    captureUntilAsked();
    QElapsedTimer clock;
    clock.start();
    const ChildProcess::Exit exit = agent().terminate();
    EXPECT_LT(clock.elapsed(), 2500 * slowness());
    EXPECT_EQ(exit.signal, 0);
    EXPECT_EQ(exit.code, 0);
    EXPECT_EQ(agent().savedPictures().size(), 1);
}

} // namespace

} // namespace snapvane::testing
