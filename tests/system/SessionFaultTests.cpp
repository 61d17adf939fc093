// Trouble in the middle of a selection: nobody is left behind a veil or without a keyboard.

#include "AgentSuite.h"
#include "InputGrabs.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class SessionFaults : public AgentSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        start(options);
    }

    /// The session must give up by itself while another client keeps the input.
    void expectEndsByItself(RudeGrab::What what) {
        {
            const RudeGrab grab(desktop().display(), what);
            agent().activateAction(u"capture-area"_s);
            // A second of trying, and some time to start and to end.
            EXPECT_TRUE(agent().waitForLogLine(u"\\] error: .*(grab|held)"_s, logAtStart,
                                               std::chrono::seconds(2)))
                << agent().log(logAtStart).toStdString();
            EXPECT_TRUE(agent().waitForOverlayGone(std::chrono::milliseconds(500)));
            EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
        }
        EXPECT_EQ(agent().capture({100, 100}, {300, 200}).size(), QSize(200, 100));
        EXPECT_TRUE(agent().waitForOverlayGone());
    }
};

TEST_F(SessionFaults, KeyboardHeldByAnotherClient) {
    expectEndsByItself(RudeGrab::What::Keyboard);
}

TEST_F(SessionFaults, PointerHeldByAnotherClient) {
    expectEndsByItself(RudeGrab::What::Pointer);
}

TEST_F(SessionFaults, KeyboardHeldForAMomentOnly) {
    auto grab = std::make_unique<RudeGrab>(desktop().display(), RudeGrab::What::Keyboard);
    agent().activateAction(u"capture-area"_s);
    pause(std::chrono::milliseconds(400));
    grab.reset();
    agent().waitForOverlay();
    injector().drag({100, 100}, {300, 200});
    EXPECT_EQ(QImage(agent().waitForPicture()).size(), QSize(200, 100));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

TEST_F(SessionFaults, ScreenUnpluggedInMidSelection) {
    beginSelection();
    injector().dragTo({2300, 300}, {2600, 600});
    desktop().removeRightScreen();
    pause(std::chrono::milliseconds(500));
    injector().release();
    // Ending the session and going on with it are both right; staying behind a veil is not.
    pause(std::chrono::milliseconds(300));
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_TRUE(agent().process().isRunning());
    expectExact({100, 100}, {400, 300}, {100, 100, 300, 200}, u"unplugged"_s);

    desktop().addRightScreen();
    pause(std::chrono::milliseconds(300));
    expectExact({2100, 100}, {2400, 300}, {2100, 100, 300, 200}, u"plugged-in"_s);
}

TEST_F(SessionFaults, ScreenPluggedInInMidSelection) {
    desktop().removeRightScreen();
    pause(std::chrono::milliseconds(300));
    beginSelection();
    desktop().addRightScreen();
    pause(std::chrono::milliseconds(500));
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_TRUE(agent().process().isRunning());
    expectExact({2100, 100}, {2400, 300}, {2100, 100, 300, 200}, u"plugged-in-later"_s);
}

TEST(KilledSession, LeavesNeitherVeilNorGrab) {
    for (const Compositor compositor : {Compositor::None, Compositor::Picom}) {
        DesktopOptions options;
        options.compositor = compositor;
        const VirtualDesktop desktop(options);
        const QImage before = grabSettledScreen(desktop.connection(), desktop.rect());
        AgentProcess agent(desktop);
        agent.activateAction(u"capture-area"_s);
        agent.waitForOverlay();
        Injector(desktop.connection()).dragTo({300, 300}, {700, 600});
        agent.killHard();
        EXPECT_TRUE(agent.waitForOverlayGone(std::chrono::seconds(1)));
        Injector(desktop.connection()).release();
        EXPECT_TRUE(waitUntil(
            [&] {
                return !isPointerGrabbed(desktop.connection()) &&
                       !isKeyboardGrabbed(desktop.connection());
            },
            std::chrono::seconds(1)));
        const QImage after = grabSettledScreen(desktop.connection(), desktop.rect());
        EXPECT_TRUE(samePicture(before, after, u"killed-session"_s));
    }
}

TEST_F(SessionFaults, CompositorThatStartsInMidSelection) {
    const QImage expected = reference().copy(300, 200, 400, 300);
    beginSelection();
    desktop().startCompositor(Compositor::PicomFading);
    ASSERT_TRUE(agent().waitForLogLine(u"Compositing was turned on or off"_s, logAtStart));
    agent().waitForOverlay();
    pause(std::chrono::milliseconds(500));
    injector().drag({300, 200}, {700, 500});
    EXPECT_TRUE(samePicture(expected, QImage(agent().waitForPicture()), u"compositor-starts"_s));
    EXPECT_TRUE(agent().waitForOverlayGone());
    desktop().stopCompositor();
}

TEST_F(SessionFaults, CompositorThatStopsInMidSelection) {
    const QImage before = reference();
    desktop().startCompositor(Compositor::Picom);
    pause(std::chrono::milliseconds(300));
    beginSelection();
    desktop().stopCompositor();
    ASSERT_TRUE(agent().waitForLogLine(u"Compositing was turned on or off"_s, logAtStart));
    agent().waitForOverlay();
    pause(std::chrono::milliseconds(300));
    // The desktop shows under the veil; it is not black.
    const QColor bare = before.pixelColor(900, 600);
    const QColor veiled = grabScreen(desktop().connection(), {900, 600, 1, 1}).pixelColor(0, 0);
    EXPECT_NEAR(veiled.green(), bare.green() * 0.82, 2);
    injector().drag({300, 200}, {700, 500});
    EXPECT_TRUE(samePicture(before.copy(300, 200, 400, 300), QImage(agent().waitForPicture()),
                            u"compositor-stops"_s));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

} // namespace

} // namespace snapvane::testing
