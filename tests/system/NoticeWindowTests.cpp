// The notice among other programs' windows: it is seen over all of them and takes nothing from
// them.

#include "AfterCaptureSuite.h"
#include "NoticeBystander.h"
#include "ScreenGrab.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect someArea(100, 100, 200, 100);

class NoticeWindow : public AfterCaptureSuite {
protected:
    static void SetUpTestSuite() { startDesktop(); }

    void SetUp() override {
        AfterCaptureSuite::SetUp();
        startAgent(actionsPreference("copyToClipboard"));
    }

    void TearDown() override {
        AfterCaptureSuite::TearDown();
        desktop().stopCompositor();
    }

    /// Shows a notice and gives its window's place.
    QRect showNotice() {
        waitForNoNotice();
        select(someArea);
        return waitForNotice().rect;
    }

    static QImage glass(const QRect& rect) { return grabScreen(desktop().connection(), rect); }

    /// A pixel of the plate that no letter touches.
    static QPoint besideText(const QSize& notice) { return {6, notice.height() / 2}; }

    /// Whether the black plate is to be seen there, soon at the latest.
    static bool plateIsSeen(const QRect& notice) {
        return waitUntil(
            [&] { return glass(notice).pixel(besideText(notice.size())) == qRgb(0, 0, 0); },
            std::chrono::seconds(1));
    }

    static void switchToWorkspace(uint32_t number) {
        const XcbConnection& connection = desktop().connection();
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = connection.root();
        message.type = connection.atom("_NET_CURRENT_DESKTOP");
        message.data.data32[0] = number;
        xcb_send_event(connection, 0, connection.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        require("the other workspace", [&] {
            return probe().number(connection.root(), "_NET_CURRENT_DESKTOP") == number;
        });
    }
};

TEST_F(NoticeWindow, KeysGoOnReachingTheFocusedWindow) {
    NoticeBystander window(desktop().display(), NoticeBystander::Kind::Plain, {600, 400, 400, 300});
    injector().click({800, 550});
    require("the focus", [&] { return probe().focus() == window.window(); });
    window.takeKeys();
    showNotice();

    const xcb_window_t root = desktop().connection().root();
    const std::vector<xcb_keycode_t> key = {injector().keyCodeFor(XK_a)};
    int typed = 0;
    int typedMeanwhile = 0;
    // While it is there and for a while after.
    for (int rest = 10; rest > 0;) {
        injector().tapKey(XK_a);
        ++typed;
        EXPECT_EQ(window.takeKeys(), key) << "key number " << typed;
        EXPECT_EQ(probe().focus(), window.window());
        EXPECT_EQ(probe().number(root, "_NET_ACTIVE_WINDOW"), window.window());
        const bool shown = noticeIsShown();
        typedMeanwhile += shown ? 1 : 0;
        rest -= shown ? 0 : 1;
        pause(std::chrono::milliseconds(20));
    }
    EXPECT_GT(typedMeanwhile, 2);
}

TEST_F(NoticeWindow, ClickGoesThroughIt) {
    NoticeBystander window(desktop().display(), NoticeBystander::Kind::OverrideRedirect,
                           {600, 0, 720, 200});
    const QRect notice = showNotice();
    ASSERT_TRUE(plateIsSeen(notice));
    injector().click(notice.center());
    injector().click(notice.topLeft() + besideText(notice.size()));
    EXPECT_EQ(window.takeClicks(), 2);
    EXPECT_TRUE(noticeIsShown());
}

TEST_F(NoticeWindow, IsSeenOverAFullScreenWindow) {
    const NoticeBystander window(desktop().display(), NoticeBystander::Kind::FullScreen,
                                 {10, 10, 100, 100});
    require("a window over the whole screen", [] {
        return grabScreen(desktop().connection(), {1919, 0, 1, 1}).pixel(0, 0) ==
               (0xff000000U | NoticeBystander::colour);
    });
    const QRect notice = showNotice();
    EXPECT_TRUE(plateIsSeen(notice));
    EXPECT_EQ(glass(notice).pixel(0, 0), 0xff000000U | NoticeBystander::colour);
    // Nor does that window come before it by being clicked.
    injector().click({960, 600});
    pause(std::chrono::milliseconds(200));
    EXPECT_TRUE(plateIsSeen(notice));
}

TEST_F(NoticeWindow, IsOnEveryWorkspace) {
    const QRect notice = showNotice();
    switchToWorkspace(1);
    EXPECT_TRUE(noticeIsShown());
    EXPECT_TRUE(plateIsSeen(notice));
    switchToWorkspace(2);
    EXPECT_TRUE(plateIsSeen(showNotice()));
    switchToWorkspace(0);
    EXPECT_TRUE(plateIsSeen(notice));
}

/// How a notice looks to the user against what stands below it.
class NoticeLook : public NoticeWindow {
protected:
    enum class Plate { Black, ShinesThrough };

    void expectLook(Plate plate) {
        waitForNoNotice();
        const QImage below = grabSettledScreen(desktop().connection(), desktop().rect());
        const QRect notice = showNotice();
        const QImage backdrop = below.copy(notice);
        const QPoint place = besideText(notice.size());
        require("the notice to be painted",
                [&] { return glass(notice).pixel(place) != backdrop.pixel(place); });
        const QImage seen = glass(notice);
        const QRect inside = seen.rect();
        for (const QPoint& corner :
             {inside.topLeft(), inside.topRight(), inside.bottomLeft(), inside.bottomRight()}) {
            EXPECT_EQ(seen.pixel(corner), backdrop.pixel(corner))
                << "corner " << corner.x() << ',' << corner.y();
        }
        // What the plate lets through of the desktop.
        const double share = plate == Plate::Black ? 0.0 : 0.18;
        const QColor colour = seen.pixelColor(place);
        const QColor behind = backdrop.pixelColor(place);
        EXPECT_NEAR(colour.red(), share * behind.red(), 2);
        EXPECT_NEAR(colour.green(), share * behind.green(), 2);
        EXPECT_NEAR(colour.blue(), share * behind.blue(), 2);
    }
};

TEST_F(NoticeLook, FollowsACompositorThatComesAndGoes) {
    expectLook(Plate::Black);
    waitForNoNotice();
    desktop().startCompositor(Compositor::Picom);
    expectLook(Plate::ShinesThrough);
    waitForNoNotice();
    desktop().stopCompositor();
    expectLook(Plate::Black);
}

TEST_F(NoticeLook, IsRoundUnderTheOtherCompositorToo) {
    desktop().startCompositor(Compositor::Xcompmgr);
    expectLook(Plate::ShinesThrough);
}

TEST_F(NoticeLook, SurvivesACompositorThatComesOrGoesMeanwhile) {
    showNotice();
    // While it is shown, as the other way round below.
    desktop().startCompositor(Compositor::Picom);
    expectLook(Plate::ShinesThrough);
    desktop().stopCompositor();
    expectLook(Plate::Black);
}

} // namespace

} // namespace snapvane::testing
