// What a session does when the desktop does not play along.

#include "selection/SelectionOverlayControllerFixture.h"

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Kind = OverlayPointerEvent::Kind;

using SelectionOverlayControllerTest = testing::ControllerTest;

TEST_F(SelectionOverlayControllerTest, RefusedInputCancelsWithOneLogLine) {
    const testing::LogCapture log;
    present();
    (void)news();
    host.session->client.overlayInputRefused(QStringLiteral("the reason"));
    EXPECT_THAT(news(),
                ElementsAre("lines hide", "loupe dismiss", "overlay close concealed", "cancelled"));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines().front().type, QtCriticalMsg);
    EXPECT_THAT(log.lines().front().text, HasSubstr("the reason"));
}

TEST_F(SelectionOverlayControllerTest, ADesktopWithoutOverlaysCancels) {
    host.capable = false;
    present();
    testing::settle();
    EXPECT_THAT(results, ElementsAre(std::nullopt));
    EXPECT_EQ(controller->overlayWindow(), nullptr);
    EXPECT_FALSE(lines.captureSessionActive());
}

TEST_F(SelectionOverlayControllerTest, ADesktopWithoutOverlaysHidesTheLoupeAgain) {
    host.capable = false;
    preferences.setShowSelectionMagnifier(true);
    present();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "snapshots", "loupe prepare 1",
                                    "overlay open", "lines hide", "loupe dismiss", "cancelled"));
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, OtherScreensDropTheDragButNotTheSession) {
    const testing::LogCapture log;
    present();
    OverlayClient& client = host.session->client;
    client.overlayPointerEvent(testing::pointerEvent(Kind::Down, screens.screens, {10, 20}));
    client.overlayPointerEvent(testing::pointerEvent(Kind::Dragged, screens.screens, {110, 70}));
    screens.screens.resize(1);
    Q_EMIT screens.changed();
    testing::settle();
    EXPECT_THAT(results, IsEmpty());
    ASSERT_TRUE(isShowing());
    EXPECT_EQ(host.session->surfaces.size(), 1U);
    EXPECT_EQ(host.opened, 2);
    EXPECT_THAT(log.errors(), IsEmpty());

    // The rest of the old drag means nothing; a new one works.
    OverlayClient& again = host.session->client;
    again.overlayPointerEvent(testing::pointerEvent(Kind::Dragged, screens.screens, {120, 80}));
    again.overlayPointerEvent(testing::pointerEvent(Kind::Up, screens.screens, {120, 80}));
    EXPECT_THAT(results, IsEmpty());
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    EXPECT_THAT(results, ElementsAre(GlobalRect{{100, 150}, {100, 50}}));
}

TEST_F(SelectionOverlayControllerTest, OtherScreensNeedOtherPictures) {
    preferences.setShowSelectionMagnifier(true);
    preferences.setShowCrosshairLinesWhileCapturing(true);
    present();
    (void)news();
    screens.screens.resize(1);
    Q_EMIT screens.changed();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "overlay close concealed",
                                    "snapshots", "loupe prepare 1", "overlay open",
                                    "lines rebuild (active)", "lines hide (active)",
                                    "lines cursor (active)", "overlay front", "loupe update"));
    pressEscape();
    EXPECT_THAT(results, ElementsAre(std::nullopt)) << "still the same capture";
}

/// A panel that comes or hides is no reason to drop a drag.
TEST_F(SelectionOverlayControllerTest, OtherRoomForDocksIsNoOtherLayout) {
    present();
    (void)news();
    screens.screens[0].visibleFrame = {{0, 40}, {400, 260}};
    Q_EMIT screens.changed();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_TRUE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, OutdatedSurfacesAreMadeAnew) {
    present();
    (void)news();
    host.session->client.overlayOutdated();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "overlay close concealed",
                                    "overlay open", "overlay front"));
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    EXPECT_THAT(results, ElementsAre(GlobalRect{{100, 150}, {100, 50}}));
}

TEST_F(SelectionOverlayControllerTest, OtherScreensWithoutASessionMeanNothing) {
    Q_EMIT screens.changed();
    present();
    pressEscape();
    (void)news();
    Q_EMIT screens.changed();
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, OtherScreensWhileSnapshotsAreTakenAreTheOnesCovered) {
    holdSnapshots();
    present();
    screens.screens.resize(1);
    Q_EMIT screens.changed();
    snapshots.gate.open();
    EXPECT_FALSE(isShowing()) << "these are pictures of the screens that were there before";
    snapshots.gate.open(1);
    ASSERT_TRUE(isShowing());
    EXPECT_EQ(host.session->surfaces.size(), 1U);
}

TEST_F(SelectionOverlayControllerTest, OtherScreensThatCannotBeCoveredCancel) {
    present();
    host.capable = false;
    screens.screens.resize(1);
    Q_EMIT screens.changed();
    EXPECT_THAT(results, ElementsAre(std::nullopt));
    EXPECT_EQ(controller->overlayWindow(), nullptr);
}

TEST_F(SelectionOverlayControllerTest, NoScreenAtAllDoesNotCrash) {
    screens.screens.clear();
    present();
    testing::settle();
    if (isShowing()) {
        EXPECT_THAT(host.session->surfaces, IsEmpty());
        pressEscape();
    }
    EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(SelectionOverlayControllerTest, TheLastScreenMayGoAndComeBack) {
    present();
    const ScreenList before = std::exchange(screens.screens, {});
    Q_EMIT screens.changed();
    testing::settle();
    screens.screens = before;
    Q_EMIT screens.changed();
    testing::settle();
    ASSERT_TRUE(isShowing());
    EXPECT_EQ(host.session->surfaces.size(), 2U);
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    EXPECT_THAT(results, ElementsAre(GlobalRect{{100, 150}, {100, 50}}));
}

} // namespace

} // namespace snapvane
