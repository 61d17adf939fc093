// What a drag selects on two screens, and what ends a session without a picture.

#include "AgentSuite.h"

#include <X11/keysym.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class Selection : public AgentSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        start(options);
    }

    /// Checks that the session is still open and has saved nothing.
    static void expectStillSelecting() {
        pause(std::chrono::milliseconds(250));
        EXPECT_EQ(agent().overlayCount(), 2);
        EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
    }
};

TEST_F(Selection, DragOnTheRightScreen) {
    expectExact({2500, 300}, {2900, 700}, {2500, 300, 400, 400}, u"selection-right"_s);
}

TEST_F(Selection, StraddlingDragIsTakenFromTheScreenOfItsCentre) {
    expectExact({1700, 100}, {2000, 300}, {1700, 100, 220, 200}, u"selection-straddle-left"_s);
    expectExact({2300, 400}, {1860, 200}, {1920, 200, 380, 200}, u"selection-straddle-right"_s);
}

TEST_F(Selection, ScreenBorderIsTheNextScreensFirstColumn) {
    expectExact({1800, 900}, {1920, 1079}, {1800, 900, 120, 180}, u"selection-border"_s);
}

TEST_F(Selection, FourByFourIsTheSmallestPicture) {
    expectExact({700, 500}, {704, 504}, {700, 500, 4, 4}, u"selection-smallest"_s);
}

TEST_F(Selection, ThinDragCancels) {
    beginSelection();
    injector().drag({500, 500}, {503, 600});
    expectCancelled();
    beginSelection();
    injector().drag({500, 500}, {600, 503});
    expectCancelled();
}

TEST_F(Selection, ClickCancels) {
    beginSelection();
    injector().click({600, 400});
    expectCancelled();
}

TEST_F(Selection, DragBackToTheStartCancels) {
    beginSelection();
    injector().dragTo({600, 400}, {900, 700});
    injector().moveTo({602, 402});
    injector().release();
    expectCancelled();
}

TEST_F(Selection, EscapeBeforeTheDragCancels) {
    beginSelection();
    injector().tapKey(XK_Escape);
    expectCancelled();
}

TEST_F(Selection, EscapeDuringTheDragCancels) {
    beginSelection();
    injector().dragTo({600, 400}, {900, 700});
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(agent().waitForOverlayGone());
    injector().release();
    expectCancelled();
}

TEST_F(Selection, SecondTriggerReplacesTheSession) {
    beginSelection();
    agent().activateAction(u"capture-area"_s);
    pause(std::chrono::milliseconds(300));
    agent().waitForOverlay();
    EXPECT_EQ(agent().overlayCount(), 2);
    injector().drag({300, 300}, {500, 450});
    const QImage picture(agent().waitForPicture());
    EXPECT_EQ(picture.size(), QSize(200, 150));
    EXPECT_TRUE(agent().waitForOverlayGone());
    // A second picture would have another second in its name.
    pause(std::chrono::milliseconds(1300));
    EXPECT_EQ(agent().filesInPictureFolder().size(), 1);
    EXPECT_FALSE(agent().loggedError(logAtStart));
}

TEST_F(Selection, TriggerInMidDragStartsAnew) {
    beginSelection();
    injector().dragTo({600, 400}, {900, 700});
    agent().activateAction(u"capture-area"_s);
    pause(std::chrono::milliseconds(300));
    agent().waitForOverlay();
    // The old drag's end belongs to no drag of the new session.
    injector().release();
    expectStillSelecting();
    injector().drag({300, 300}, {420, 410});
    EXPECT_EQ(QImage(agent().waitForPicture()).size(), QSize(120, 110));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

TEST_F(Selection, OtherKeysDoNothing) {
    beginSelection();
    for (const xcb_keysym_t key : {XK_Return, XK_space, XK_Left, XK_Right, XK_Up, XK_Down, XK_a}) {
        injector().tapKey(static_cast<xcb_keysym_t>(key));
    }
    expectStillSelecting();
    injector().tapKey(XK_Escape);
    expectCancelled();
}

TEST_F(Selection, OtherButtonsAndTheWheelDoNothing) {
    beginSelection();
    for (const int button : {2, 3, 4, 5}) {
        injector().moveTo({500, 500});
        injector().press(button);
        injector().moveTo({800, 800});
        injector().release(button);
    }
    expectStillSelecting();
    injector().dragTo({300, 300}, {500, 450});
    for (const int button : {2, 3, 4, 5}) {
        injector().press(button);
        injector().release(button);
    }
    expectStillSelecting();
    injector().release();
    EXPECT_EQ(QImage(agent().waitForPicture()).size(), QSize(200, 150));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

TEST_F(Selection, InputFocusStaysWhereItWas) {
    TestClient::Options options;
    options.rect = QRect(200, 200, 400, 300);
    const TestClient window(desktop(), options);
    injector().click({400, 350});
    require("the window to have the focus", [&] { return probe().focus() == window.window(); });
    beginSelection();
    EXPECT_EQ(probe().focus(), window.window());
    injector().drag({300, 300}, {500, 450});
    agent().waitForPicture();
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_EQ(probe().focus(), window.window());
}

TEST_F(Selection, OneOverlayAScreenWithTheNamesOthersRelyOn) {
    beginSelection();
    const auto overlays = probe().windowsNamed(u"Snapvane Selection"_s);
    ASSERT_EQ(overlays.size(), 2U);
    for (const WindowInfo& overlay : overlays) {
        EXPECT_TRUE(overlay.overrideRedirect);
        EXPECT_EQ(overlay.instanceName, u"snapvane"_s);
        EXPECT_EQ(overlay.className, u"Snapvane"_s);
        const int index = overlay.rect.x() == 0 ? 0 : 1;
        EXPECT_EQ(overlay.rect, desktop().screenRect(index));
    }
    injector().tapKey(XK_Escape);
    expectCancelled();
}

TEST_F(Selection, PlaceOfTheReleaseCountsHoweverBusyTheAgentIs) {
    const QImage expected = reference().copy(100, 100, 300, 200);
    beginSelection();
    injector().moveTo({100, 100});
    injector().press();
    injector().moveTo({150, 150});
    pause(std::chrono::milliseconds(100));
    // What is moved meanwhile waits in a queue, in which later motion drives out earlier.
    agent().process().sendSignal(SIGSTOP);
    injector().moveTo({400, 300});
    injector().release();
    injector().moveTo({600, 600});
    agent().process().sendSignal(SIGCONT);
    EXPECT_TRUE(samePicture(expected, QImage(agent().waitForPicture()), u"selection-busy"_s));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

} // namespace

} // namespace snapvane::testing
