// What becomes of a session when the desktop changes under it.

#include "selection/SelectionOverlayControllerFixture.h"

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Kind = OverlayPointerEvent::Kind;

class SelectionOverlayControllerRestart : public testing::ControllerTest {
protected:
    /// To others of the same size at the same places.
    void changeScreens() {
        screens.screens.front().id += 10;
        Q_EMIT screens.changed();
    }

    // The changes are logged.
    testing::LogCapture m_log;
};

TEST_F(SelectionOverlayControllerRestart, IsToldInTheLog) {
    present();
    changeScreens();
    EXPECT_THAT(m_log.errors(), IsEmpty());
    EXPECT_THAT(m_log.lines(), SizeIs(1));
    pressEscape();
}

TEST_F(SelectionOverlayControllerRestart, CountsAsADismissalAndAPresent) {
    present();
    const std::int64_t before = controller->presentGeneration();
    changeScreens();
    EXPECT_EQ(controller->presentGeneration(), before + 2);
}

TEST_F(SelectionOverlayControllerRestart, KeepsTheCompletionHoweverOftenItHappens) {
    present();
    for (int i = 0; i < 5; ++i) {
        changeScreens();
        host.session->client.overlayOutdated();
    }
    EXPECT_THAT(results, IsEmpty());
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    EXPECT_THAT(results, ElementsAre(GlobalRect{{100, 150}, {100, 50}}));
    EXPECT_EQ(host.opened, 11);
}

TEST_F(SelectionOverlayControllerRestart, TakesFreshSnapshotsAndLetsTheOldOnesGo) {
    preferences.setShowSelectionMagnifier(true);
    present();
    ASSERT_THAT(controller->displaySnapshots(), SizeIs(1));
    snapshots.hold = true;
    changeScreens();
    EXPECT_FALSE(isShowing());
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
    EXPECT_FALSE(lines.captureSessionActive());
    snapshots.list.push_back(snapshots.list.front());
    snapshots.gate.open();
    EXPECT_TRUE(isShowing());
    EXPECT_THAT(controller->displaySnapshots(), SizeIs(2));
    EXPECT_TRUE(lines.captureSessionActive());
}

TEST_F(SelectionOverlayControllerRestart, SnapshotsThatFailThenMeanNoLoupe) {
    preferences.setShowSelectionMagnifier(true);
    present();
    snapshots.hold = true;
    (void)news();
    changeScreens();
    snapshots.gate.open(0, false);
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "overlay close concealed",
                                    "snapshots", "overlay open", "overlay front"));
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
}

TEST_F(SelectionOverlayControllerRestart, FollowsTheSettingsOfTheMoment) {
    preferences.setShowSelectionMagnifier(true);
    present();
    preferences.setShowSelectionMagnifier(false);
    preferences.setShowCrosshairLinesWhileCapturing(true);
    preferences.setSelectionDimAmount(0.2);
    (void)news();
    changeScreens();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "overlay close concealed",
                                    "overlay open", "lines rebuild (active)", "lines hide (active)",
                                    "lines cursor (active)", "overlay front"));
    EXPECT_EQ(host.session->options.dimAmount, 0.2);
}

TEST_F(SelectionOverlayControllerRestart, AMenusSessionWaitsForMenusAgain) {
    present(CaptureTrigger::Menu);
    testing::settle();
    ASSERT_TRUE(isShowing());
    changeScreens();
    testing::settle();
    EXPECT_EQ(host.menuWaits, 2);
    EXPECT_TRUE(isShowing());
}

TEST_F(SelectionOverlayControllerRestart, WhileMenusCloseTheFirstWaitIsForNothing) {
    host.holdMenus = true;
    present(CaptureTrigger::Menu);
    changeScreens();
    ASSERT_EQ(host.menus.waits(), 2U);
    host.menus.open(0);
    EXPECT_FALSE(isShowing());
    host.menus.open(1);
    EXPECT_TRUE(isShowing());
    EXPECT_EQ(host.opened, 1);
}

TEST_F(SelectionOverlayControllerRestart, DropsADragAndWhatIsLeftOfIt) {
    present();
    OverlayClient& before = host.session->client;
    before.overlayPointerEvent(testing::pointerEvent(Kind::Down, screens.screens, {10, 20}));
    before.overlayPointerEvent(testing::pointerEvent(Kind::Dragged, screens.screens, {110, 70}));
    before.overlayOutdated();
    ASSERT_TRUE(isShowing());
    OverlayClient& after = host.session->client;
    after.overlayPointerEvent(testing::pointerEvent(Kind::Moved, screens.screens, {120, 80}));
    EXPECT_EQ(magnifier.size, GlobalSize());
    after.overlayPointerEvent(testing::pointerEvent(Kind::Dragged, screens.screens, {130, 90}));
    after.overlayPointerEvent(testing::pointerEvent(Kind::Up, screens.screens, {120, 80}));
    EXPECT_THAT(results, IsEmpty());
    EXPECT_TRUE(isShowing());
}

TEST_F(SelectionOverlayControllerRestart, DoesNotBringADismissedSessionBack) {
    present();
    controller->dismiss();
    (void)news();
    changeScreens();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerRestart, DoesNotBringACompletedSessionBack) {
    present();
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    (void)news();
    changeScreens();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_THAT(results, SizeIs(1));
}

TEST_F(SelectionOverlayControllerRestart, ASessionWithoutACompletionGoesOnAsWell) {
    controller->present(nullptr);
    changeScreens();
    EXPECT_TRUE(isShowing());
    pressEscape();
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerRestart, RefusedInputAfterwardsCancelsOnce) {
    present();
    changeScreens();
    host.session->client.overlayInputRefused(QStringLiteral("the reason"));
    EXPECT_THAT(results, ElementsAre(std::nullopt));
    changeScreens();
    EXPECT_THAT(results, SizeIs(1));
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerRestart, LinesAreShownAtThePointerOfThen) {
    preferences.setShowSelectionMagnifier(true);
    preferences.setShowCrosshairLinesWhileCapturing(true);
    screens.pointer = {5, 6};
    present();
    screens.pointer = {50, 60};
    changeScreens();
    EXPECT_EQ(lines.cursor, (GlobalPoint{50, 60}));
    EXPECT_EQ(magnifier.point, (GlobalPoint{50, 60}));
    EXPECT_EQ(magnifier.size, GlobalSize());
}

TEST_F(SelectionOverlayControllerRestart, TheControllerMayGoMeanwhile) {
    preferences.setShowSelectionMagnifier(true);
    present();
    snapshots.hold = true;
    changeScreens();
    controller.reset();
    snapshots.gate.open();
    EXPECT_FALSE(isShowing());
    changeScreens();
    EXPECT_THAT(results, IsEmpty());
}

} // namespace

} // namespace snapvane
