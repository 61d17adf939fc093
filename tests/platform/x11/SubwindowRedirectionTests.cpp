#include "SnapshotFixture.h"

#include "platform/x11/ShownWindowsWatch.h"
#include "platform/x11/SubwindowRedirection.h"
#include "platform/x11/Xcb.h"

#include <QSystemTrayIcon>
#include <QWindow>

#include <xcb/composite.h>

namespace snapvane {

namespace {

/// Looks at a window of another program.
class RedirectionTest : public ::testing::Test {
protected:
    RedirectionTest() {
        const testing::XcbConnection& connection = testDesktop().connection();
        x11::owned(xcb_composite_query_version_reply(
            connection, xcb_composite_query_version(connection, 0, 4), nullptr));
    }

    /// Whether the server keeps its pixels, wherever others cover it.
    bool keepsPixels() const {
        x11::roundTrip(x11::qtServer());
        const testing::XcbConnection& connection = testDesktop().connection();
        const xcb_pixmap_t pixmap = xcb_generate_id(connection);
        const auto error =
            x11::owned(xcb_request_check(connection, xcb_composite_name_window_pixmap_checked(
                                                         connection, m_foreign.id(), pixmap)));
        if (!error) {
            xcb_free_pixmap(connection, pixmap);
        }
        return error == nullptr;
    }

    ForeignWindow m_foreign{{.rect = QRect(300, 200, 120, 80)}};
};

using SubwindowRedirectionTest = RedirectionTest;

class ShownWindowsWatchTest : public RedirectionTest {
protected:
    x11::ShownWindowsWatch m_watch;
};

} // namespace

TEST_F(SubwindowRedirectionTest, LastsAsLongAsAnybodyHoldsIt) {
    EXPECT_FALSE(keepsPixels());
    auto first = std::make_unique<x11::SubwindowRedirection>(x11::qtServer());
    EXPECT_TRUE(keepsPixels());
    auto second = std::make_unique<x11::SubwindowRedirection>(x11::qtServer());
    EXPECT_TRUE(keepsPixels());
    first.reset();
    EXPECT_TRUE(keepsPixels());
    second.reset();
    EXPECT_FALSE(keepsPixels());
}

TEST_F(ShownWindowsWatchTest, HoldsWhileAWindowIsShown) {
    OwnWindow window(unmanaged);
    EXPECT_FALSE(keepsPixels());
    window.show();
    EXPECT_TRUE(keepsPixels());
    window.hide();
    EXPECT_FALSE(keepsPixels());
    window.show();
    EXPECT_TRUE(keepsPixels());
    window.hide();
    EXPECT_FALSE(keepsPixels());
}

TEST_F(ShownWindowsWatchTest, HoldsUntilTheLastWindowIsHidden) {
    OwnWindow one(unmanaged);
    OwnWindow other(unmanaged);
    one.show();
    other.show();
    one.hide();
    EXPECT_TRUE(keepsPixels());
    other.hide();
    EXPECT_FALSE(keepsPixels());
}

TEST_F(ShownWindowsWatchTest, LetsGoOfAWindowThatIsDestroyed) {
    auto widget = std::make_unique<OwnWindow>(unmanaged);
    widget->show();
    EXPECT_TRUE(keepsPixels());
    widget.reset();
    EXPECT_FALSE(keepsPixels());
    auto window = std::make_unique<QWindow>();
    window->show();
    EXPECT_TRUE(keepsPixels());
    window.reset();
    EXPECT_FALSE(keepsPixels());
}

TEST_F(ShownWindowsWatchTest, TakesNoNoticeOfWindowsInsideOthers) {
    QWindow outer;
    outer.create();
    QWindow inner(&outer);
    inner.show();
    EXPECT_FALSE(keepsPixels());
    outer.show();
    inner.hide();
    EXPECT_TRUE(keepsPixels());
}

TEST_F(ShownWindowsWatchTest, TakesNoNoticeOfAnIconInATray) {
    testDesktop().startTray();
    {
        QPixmap picture(16, 16);
        picture.fill(QColor(OwnWindow::color));
        QSystemTrayIcon icon{QIcon(picture)};
        icon.show();
        EXPECT_TRUE(waitForEvents([] {
            return ownPixels(
                       testing::grabScreen(testDesktop().connection(), testDesktop().rect())) > 0;
        }));
        EXPECT_FALSE(keepsPixels());
    }
    testDesktop().stopTray();
}

TEST_F(SubwindowRedirectionTest, IsHeldForAWindowThatWasShownBefore) {
    OwnWindow window(unmanaged);
    window.show();
    EXPECT_FALSE(keepsPixels());
    const x11::ShownWindowsWatch watch;
    EXPECT_TRUE(keepsPixels());
    window.hide();
    EXPECT_FALSE(keepsPixels());
}

} // namespace snapvane
