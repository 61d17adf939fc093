// How a session runs and ends.

#include "selection/SelectionOverlayControllerFixture.h"

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Kind = OverlayPointerEvent::Kind;

using SelectionOverlayControllerTest = testing::ControllerTest;

TEST_F(SelectionOverlayControllerTest, PointerReportsReachTheLinesFirstAndThenTheLoupe) {
    present();
    (void)news();
    OverlayClient& client = host.session->client;
    client.overlayPointerEvent(testing::pointerEvent(Kind::Moved, screens.screens, {10, 20}));
    EXPECT_THAT(news(), ElementsAre("lines cursor (active)", "loupe update"));
    // The lower-left corner of the pixel.
    EXPECT_EQ(lines.cursor, (GlobalPoint{10, 279}));
    EXPECT_EQ(magnifier.point, (GlobalPoint{10, 279}));
    EXPECT_EQ(magnifier.size, GlobalSize());

    client.overlayPointerEvent(testing::pointerEvent(Kind::Down, screens.screens, {10, 20}));
    client.overlayPointerEvent(testing::pointerEvent(Kind::Dragged, screens.screens, {110, 70}));
    EXPECT_THAT(news(), ElementsAre("lines cursor (active)", "loupe update",
                                    "lines cursor (active)", "loupe update"));
    EXPECT_EQ(magnifier.size, (GlobalSize{100, 50}));
}

TEST_F(SelectionOverlayControllerTest, EverythingIsGoneBeforeTheCompletionIsCalled) {
    preferences.setShowSelectionMagnifier(true);
    present();
    (void)news();
    bool wasClean = false;
    auto inner = controller->takeCompletion();
    controller->present([&](std::optional<GlobalRect> rect) {
        wasClean = !isShowing() && controller->overlayWindow() == nullptr &&
                   controller->displaySnapshots().empty() && !lines.captureSessionActive();
        inner(rect);
    });
    (void)news();
    testing::drag(host, screens.screens, {100, 100}, {200, 150});
    EXPECT_TRUE(wasClean);
    const testing::Journal end = news();
    ASSERT_GE(end.size(), 4U);
    EXPECT_THAT(testing::Journal(end.end() - 4, end.end()),
                ElementsAre("lines hide", "loupe dismiss", "overlay close concealed", "completed"));
    EXPECT_THAT(results, ElementsAre(GlobalRect{{100, 150}, {100, 50}}));
}

TEST_F(SelectionOverlayControllerTest, ASelectionOnTheRightScreenIsInGlobalPoints) {
    present();
    testing::drag(host, screens.screens, {500, 100}, {600, 200});
    EXPECT_THAT(results, ElementsAre(GlobalRect{{500, 100}, {100, 100}}));
}

TEST_F(SelectionOverlayControllerTest, AScreenLeftOfThePrimaryHasNegativePlaces) {
    screens.screens =
        ScreenMapping::layOut({{1, QStringLiteral("P"), {{400, 0}, {400, 300}}, 1, {}},
                               {2, QStringLiteral("L"), {{0, 0}, {400, 300}}, 1, {}}});
    present();
    testing::drag(host, screens.screens, {100, 100}, {200, 200});
    EXPECT_THAT(results, ElementsAre(GlobalRect{{-300, 100}, {100, 100}}));
}

TEST_F(SelectionOverlayControllerTest, EscapeCancels) {
    present();
    (void)news();
    pressEscape();
    EXPECT_THAT(news(),
                ElementsAre("lines hide", "loupe dismiss", "overlay close concealed", "cancelled"));
    EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(SelectionOverlayControllerTest, EscapeDuringADragCancels) {
    present();
    OverlayClient& client = host.session->client;
    client.overlayPointerEvent(testing::pointerEvent(Kind::Down, screens.screens, {10, 20}));
    client.overlayPointerEvent(testing::pointerEvent(Kind::Dragged, screens.screens, {110, 70}));
    pressEscape();
    testing::settle();
    EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(SelectionOverlayControllerTest, TheCancelCommandCancels) {
    present();
    host.session->client.overlayKeyEvent({-1, true});
    EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(SelectionOverlayControllerTest, ClicksAndSliversCancel) {
    present();
    testing::drag(host, screens.screens, {100, 100}, {100, 100});
    present();
    testing::drag(host, screens.screens, {100, 100}, {103, 200});
    EXPECT_THAT(results, ElementsAre(std::nullopt, std::nullopt));
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, ReturnDoesNotEndTheSession) {
    present();
    host.session->client.overlayKeyEvent({36, false});
    EXPECT_TRUE(isShowing());
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, TheCompletionIsCalledOnceOnly) {
    present();
    pressEscape();
    controller->dismiss();
    testing::settle();
    EXPECT_THAT(results, SizeIs(1));
    EXPECT_FALSE(static_cast<bool>(controller->takeCompletion()));
}

TEST_F(SelectionOverlayControllerTest, TheCompletionIsClearedBeforeItIsCalled) {
    bool wasCleared = false;
    controller->present(
        [&](std::optional<GlobalRect>) { wasCleared = !controller->takeCompletion(); });
    pressEscape();
    EXPECT_TRUE(wasCleared);
}

TEST_F(SelectionOverlayControllerTest, TheCompletionMayStartTheNextSession) {
    controller->present([this](std::optional<GlobalRect>) { present(); });
    pressEscape();
    EXPECT_TRUE(isShowing());
    EXPECT_EQ(host.opened, 2);
    testing::drag(host, screens.screens, {0, 0}, {40, 40});
    EXPECT_THAT(results, SizeIs(1));
    EXPECT_TRUE(results.front().has_value());
}

TEST_F(SelectionOverlayControllerTest, DismissalCallsNobody) {
    present();
    (void)news();
    controller->dismiss();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "overlay close concealed"));
    EXPECT_THAT(results, IsEmpty());
    EXPECT_EQ(controller->overlayWindow(), nullptr);
}

TEST_F(SelectionOverlayControllerTest, ATakenCompletionIsTheCallersOwn) {
    present();
    const auto completion = controller->takeCompletion();
    ASSERT_TRUE(static_cast<bool>(completion));
    pressEscape();
    EXPECT_THAT(results, IsEmpty());
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, AnEmptyCompletionIsNoTrouble) {
    controller->present(nullptr);
    pressEscape();
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, WithoutAWindowARectangleIsNothing) {
    present();
    SelectionOverlayView stray({{0, 0}, {10, 10}});
    controller->dismiss();
    controller->selectionOverlayViewDidComplete(stray, {{1, 2}, {30, 40}});
    EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(SelectionOverlayControllerTest, ManySessionsInARow) {
    preferences.setShowSelectionMagnifier(true);
    preferences.setShowCrosshairLinesWhileCapturing(true);
    for (int i = 0; i < 100; ++i) {
        present();
        ASSERT_TRUE(isShowing());
        testing::drag(host, screens.screens, {10, 10}, {60 + i, 60});
        testing::settle();
    }
    EXPECT_THAT(results, SizeIs(100));
    EXPECT_EQ(controller->presentGeneration(), 300);
}

} // namespace

} // namespace snapvane
