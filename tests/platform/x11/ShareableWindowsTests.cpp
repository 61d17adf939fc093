#include "SnapshotFixture.h"

#include "support/TestClient.h"

#include <QGuiApplication>
#include <QSystemTrayIcon>
#include <QWindow>

namespace snapvane {

namespace {

const RunningApplication ourselves = {QLatin1String(applicationIdentifier)};

class ShareableWindowsTest : public SnapshotTest {
protected:
    /// The child of the root window that the window is, or stands in.
    static xcb_window_t topLevelOf(xcb_window_t window) {
        for (;;) {
            const testing::Reply<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
            if (!tree || tree->parent == connection().root()) {
                return window;
            }
            window = tree->parent;
        }
    }

    static ForeignWindow::Options options(const QByteArray& className = "Foreign") {
        ForeignWindow::Options result;
        result.rect = QRect(300, 200, 120, 80);
        result.className = className;
        return result;
    }

    int positionOf(xcb_window_t window) {
        const auto list = windows();
        const auto found = std::find_if(list.begin(), list.end(),
                                        [window](const auto& each) { return each.id == window; });
        return found == list.end() ? -1 : static_cast<int>(found - list.begin());
    }
};

/// A tray for as long as it lives.
class RunningTray {
public:
    RunningTray() { testDesktop().startTray(); }
    ~RunningTray() { testDesktop().stopTray(); }
    RunningTray(const RunningTray&) = delete;
    RunningTray& operator=(const RunningTray&) = delete;
};

} // namespace

TEST_F(ShareableWindowsTest, TellTheProgramByTheirClass) {
    const ForeignWindow window(options("Editor"));
    const auto found = listed(window.id());
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->owningApplication, RunningApplication{QStringLiteral("Editor")});
}

TEST_F(ShareableWindowsTest, TellOursByTheApplicationsIdentifier) {
    const auto own = showOwn({100, 100, 200, 100});
    const auto found = listed(own->id());
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->owningApplication, ourselves);
}

TEST_F(ShareableWindowsTest, TellNoProgramWithoutAClass) {
    const ForeignWindow none(options({}));
    const ForeignWindow half(options({}));
    half.setText("WM_CLASS", "only-the-instance");
    const ForeignWindow empty(options({}));
    empty.setText("WM_CLASS", QByteArray("instance\0\0", 10));
    for (const ForeignWindow* window : {&none, &half, &empty}) {
        const auto found = listed(window->id());
        ASSERT_TRUE(found.has_value());
        EXPECT_FALSE(found->owningApplication.has_value());
    }
}

TEST_F(ShareableWindowsTest, AreListedFromTheBottomToTheTop) {
    const ForeignWindow first(options());
    const ForeignWindow second(options());
    const ForeignWindow third(options());
    EXPECT_LT(positionOf(first.id()), positionOf(second.id()));
    EXPECT_LT(positionOf(second.id()), positionOf(third.id()));
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection(), first.id(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    connection().sync();
    EXPECT_GT(positionOf(first.id()), positionOf(third.id()));
}

TEST_F(ShareableWindowsTest, AreOnTheScreenUnlessAllAreAskedFor) {
    ForeignWindow::Options hidden = options("Hidden");
    hidden.mapped = false;
    const ForeignWindow window(hidden);
    EXPECT_FALSE(listed(window.id()).has_value());
    const auto found = listed(window.id(), {.onScreenWindowsOnly = false});
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->owningApplication, RunningApplication{QStringLiteral("Hidden")});
}

TEST_F(ShareableWindowsTest, LeaveOutDesktopsWhenAsked) {
    ForeignWindow::Options background = options("Desktop");
    background.windowType = "_NET_WM_WINDOW_TYPE_DESKTOP";
    ForeignWindow::Options panel = options("Dock");
    panel.windowType = "_NET_WM_WINDOW_TYPE_DOCK";
    const ForeignWindow desktopWindow(background);
    const ForeignWindow dock(panel);
    EXPECT_TRUE(listed(desktopWindow.id()).has_value());
    const ContentQuery query = {.excludeDesktopWindows = true};
    EXPECT_FALSE(listed(desktopWindow.id(), query).has_value());
    EXPECT_TRUE(listed(dock.id(), query).has_value());
}

TEST_F(ShareableWindowsTest, AreNotListedForNothing) {
    const ForeignWindow window(options());
    EXPECT_TRUE(windows({.listsWindows = false}).empty());
}

TEST_F(ShareableWindowsTest, HavePixels) {
    const testing::XcbConnection& other = connection();
    const xcb_window_t window = xcb_generate_id(other);
    const std::uint32_t unmanagedWindow = 1;
    xcb_create_window(other, 0, window, other.root(), 0, 0, 50, 50, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanagedWindow);
    xcb_map_window(other, window);
    other.sync();
    EXPECT_FALSE(listed(window).has_value());
    xcb_destroy_window(other, window);
    other.sync();
}

TEST_F(ShareableWindowsTest, StandForTheirFramesWhenTheyAreManaged) {
    ForeignWindow::Options managed = options("Framed");
    managed.overrideRedirect = false;
    const ForeignWindow window(managed);
    ASSERT_TRUE(waitForEvents([&] { return topLevelOf(window.id()) != window.id(); }));
    settle();
    EXPECT_FALSE(listed(window.id()).has_value());
    const auto found = listed(topLevelOf(window.id()));
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->owningApplication, RunningApplication{QStringLiteral("Framed")});
}

TEST_F(ShareableWindowsTest, BelongToUsWithTheirFrames) {
    const auto own = showOwn({300, 200, 200, 100}, false, Qt::Window);
    settle();
    const xcb_window_t frame = topLevelOf(own->id());
    ASSERT_NE(frame, own->id());
    const auto found = listed(frame);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->owningApplication, ourselves);
}

/// As trays do it, with an icon of ours inside.
TEST_F(ShareableWindowsTest, BelongToTheirMakerWhateverTheyEmbed) {
    const ForeignWindow panel(options("Panel"));
    const ForeignWindow icon(options("Snapvane"));
    xcb_reparent_window(connection(), icon.id(), panel.id(), 5, 5);
    connection().sync();
    const auto found = listed(panel.id());
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->owningApplication, RunningApplication{QStringLiteral("Panel")});
    const ForeignWindow nameless(options({}));
    xcb_reparent_window(connection(), icon.id(), nameless.id(), 5, 5);
    connection().sync();
    const auto alsoFound = listed(nameless.id());
    ASSERT_TRUE(alsoFound.has_value());
    EXPECT_FALSE(alsoFound->owningApplication.has_value());
}

TEST_F(ShareableWindowsTest, OfARealTrayAreNotOurs) {
    const RunningTray tray;
    QPixmap picture(16, 16);
    picture.fill(QColor(OwnWindow::color));
    QSystemTrayIcon icon{QIcon(picture)};
    icon.show();
    const testing::X11Probe probe(connection());
    ASSERT_TRUE(waitForEvents([&] { return ownPixels(glass()) > 0; }));
    // The program's windows all have its class; this one has the test's.
    for (const QWindow* window : QGuiApplication::allWindows()) {
        x11::setWindowIdentity(x11::qtServer(), static_cast<xcb_window_t>(window->winId()), "Icon");
    }
    x11::roundTrip(x11::qtServer());
    EXPECT_FALSE(probe.windowsOfClass(QLatin1String(productName)).empty());
    for (const ShareableWindow& window : windows()) {
        EXPECT_NE(window.owningApplication, ourselves);
    }
    // It is part of the desktop that everybody sees.
    EXPECT_GT(ownPixels(snapshot()), 0);
}

} // namespace snapvane
