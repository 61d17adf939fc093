// What becomes of a copied picture when the program leaves, and how long it takes to leave.

#include "AfterCaptureSuite.h"
#include "ClipboardManager.h"
#include "ClipboardOwner.h"
#include "ClipboardReader.h"
#include "TestClient.h"
#include "Wait.h"

#include <csignal>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QSize largeScreen(2560, 1600);
constexpr QRect largeArea(100, 100, 2200, 1400);
constexpr QRect someArea(100, 100, 600, 400);
constexpr char png[] = "image/png";

class ClipboardExit : public AfterCaptureSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screenSize = largeScreen;
        startDesktop(options);
    }

    /// Copies and saves a picture and gives the file's bytes.
    QByteArray copyPicture(const QRect& rect = someArea) {
        startAgent(actionsPreference("copyToClipboard, saveToFolder"));
        select(rect);
        waitForNotice();
        return contentsOf(waitForPicture());
    }

    /// Tells the agent to leave and checks that it does so in time and in good order.
    void expectToLeaveWithin(std::chrono::milliseconds limit) {
        agent().process().sendSignal(SIGTERM);
        const auto exit = agent().waitForEnd(limit);
        ASSERT_TRUE(exit.has_value()) << "still there";
        EXPECT_EQ(exit->code, 0);
        EXPECT_EQ(exit->signal, 0);
    }
};

TEST_F(ClipboardExit, WithoutManagerItLeavesAtOnce) {
    copyPicture();
    expectToLeaveWithin(std::chrono::seconds(2));
    EXPECT_EQ(probe().selectionOwner("CLIPBOARD"), xcb_window_t(XCB_WINDOW_NONE));
}

TEST_F(ClipboardExit, ManagerKeepsThePicture) {
    const ClipboardManager manager(desktop());
    const QByteArray file = copyPicture();
    expectToLeaveWithin(std::chrono::seconds(2));
    ClipboardReader reader(desktop().display());
    const auto kept = reader.read(png);
    ASSERT_TRUE(kept.has_value()) << reader.targets().join(u' ').toStdString();
    EXPECT_TRUE(*kept == file) << kept->size() << " bytes instead of " << file.size();
}

TEST_F(ClipboardExit, ManagerKeepsALargePicture) {
    TestClient::Options options;
    options.mode = u"noise"_s;
    options.rect = largeArea;
    options.overrideRedirect = true;
    const TestClient noise(desktop(), options);
    const ClipboardManager manager(desktop());
    const QByteArray file = copyPicture(largeArea);
    ASSERT_GT(file.size(), 8 * 1024 * 1024);
    expectToLeaveWithin(std::chrono::seconds(2));
    const auto kept = ClipboardReader(desktop().display()).read(png);
    ASSERT_TRUE(kept.has_value());
    EXPECT_TRUE(*kept == file) << kept->size() << " bytes instead of " << file.size();
}

TEST_F(ClipboardExit, NextOneMayStartWhileASilentManagerHoldsItUp) {
    const ClipboardOwner manager(desktop().display(), "CLIPBOARD_MANAGER");
    copyPicture();
    agent().process().sendSignal(SIGTERM);
    pause(std::chrono::milliseconds(500));
    ASSERT_TRUE(agent().process().isRunning()) << "was not held up";
    writePreferences(actionsPreference("saveToFolder"));
    AgentProcess next(desktop());
    // Long enough to leave for one that thinks itself the second.
    pause(std::chrono::milliseconds(1000));
    EXPECT_TRUE(next.process().isRunning());
    EXPECT_EQ(next.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
    EXPECT_EQ(agent().waitForEnd(std::chrono::seconds(7)).value_or(ChildProcess::Exit{1, 0}).code,
              0);
}

TEST_F(ClipboardExit, SilentManagerHoldsItUpForAWhileOnly) {
    const ClipboardOwner manager(desktop().display(), "CLIPBOARD_MANAGER");
    copyPicture();
    // The toolkit waits five seconds for it.
    expectToLeaveWithin(std::chrono::seconds(7));
}

TEST_F(ClipboardExit, NothingCopiedNothingToWaitFor) {
    const ClipboardOwner manager(desktop().display(), "CLIPBOARD_MANAGER");
    startAgent(actionsPreference("saveToFolder"));
    select(someArea);
    waitForPicture();
    expectToLeaveWithin(std::chrono::seconds(2));
}

} // namespace

} // namespace snapvane::testing
