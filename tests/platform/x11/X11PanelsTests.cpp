#include "platform/x11/X11Panels.h"

#include "X11TestDesktop.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/Xcb.h"
#include "support/QtPrinting.h"
#include "support/TestClient.h"
#include "support/X11Probe.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace snapvane {

namespace {

class X11PanelsTest : public ::testing::Test {
protected:
    std::unique_ptr<Panel> panel(const char* name, int level,
                                 PanelInput input = PanelInput::ClickThrough) {
        auto content = std::make_unique<QWidget>();
        content->setFixedSize(120, 40);
        PanelOptions options;
        options.name = QString::fromLatin1(name);
        options.level = level;
        options.input = input;
        return m_panels.create(std::move(content), options);
    }

    /// The window once it is on the screen.
    static std::optional<testing::WindowInfo> windowOf(const char* name) {
        const testing::X11Probe probe(testDesktop().connection());
        std::optional<testing::WindowInfo> found;
        waitForEvents([&] {
            found = probe.viewableWindowNamed(QString::fromLatin1(name));
            return found.has_value();
        });
        return found;
    }

    /// How far up the window stands among the root's children; -1 when it is none.
    static int heightOf(xcb_window_t window) {
        const testing::XcbConnection& connection = testDesktop().connection();
        const auto tree = x11::owned(xcb_query_tree_reply(
            connection, xcb_query_tree(connection, connection.root()), nullptr));
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        const int count = xcb_query_tree_children_length(tree.get());
        const auto* found = std::find(children, children + count, window);
        return found == children + count ? -1 : static_cast<int>(found - children);
    }

    /// The child of the root window that would take a click there.
    static xcb_window_t takerOfClickAt(const QPoint& point) {
        const testing::XcbConnection& connection = testDesktop().connection();
        const auto cookie = xcb_translate_coordinates(
            connection, connection.root(), connection.root(), static_cast<std::int16_t>(point.x()),
            static_cast<std::int16_t>(point.y()));
        const auto reply = x11::owned(xcb_translate_coordinates_reply(connection, cookie, nullptr));
        return reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
    }

    x11::X11Screens m_screens;
    x11::X11Panels m_panels{m_screens};
};

} // namespace

TEST_F(X11PanelsTest, StandWhereTheyAreToldTo) {
    struct Case {
        GlobalPoint origin;
        QRect rect;
    };
    const Case cases[] = {{{100, 200}, {100, 560, 120, 40}},
                          {{0, 0}, {0, 760, 120, 40}},
                          {{1280, 760}, {1280, 0, 120, 40}},
                          {{2440, 10}, {2440, 750, 120, 40}},
                          {{1230, 400}, {1230, 360, 120, 40}}};
    const auto shown = panel("Panel Place", 25);
    EXPECT_FALSE(shown->isVisible());
    for (const Case& c : cases) {
        shown->showAt(c.origin);
        EXPECT_TRUE(shown->isVisible());
        const auto window = windowOf("Panel Place");
        ASSERT_TRUE(window.has_value());
        EXPECT_TRUE(window->overrideRedirect);
        EXPECT_EQ(window->className, QStringLiteral("Snapvane"));
        settle();
        EXPECT_EQ(windowOf("Panel Place")->rect, c.rect);
    }
    shown->hide();
    EXPECT_FALSE(shown->isVisible());
    const testing::X11Probe probe(testDesktop().connection());
    EXPECT_TRUE(waitForEvents(
        [&probe] { return !probe.viewableWindowNamed(QStringLiteral("Panel Place")); }));
}

TEST_F(X11PanelsTest, GoWithTheirObject) {
    auto shown = panel("Panel Gone", 25);
    shown->showAt({100, 100});
    ASSERT_TRUE(windowOf("Panel Gone").has_value());
    shown.reset();
    const testing::X11Probe probe(testDesktop().connection());
    EXPECT_TRUE(waitForEvents(
        [&probe] { return probe.windowsNamed(QStringLiteral("Panel Gone")).empty(); }));
}

TEST_F(X11PanelsTest, LetClicksThroughWhenTheyAreTo) {
    const auto through = panel("Panel Through", 25, PanelInput::ClickThrough);
    const auto taking = panel("Panel Taking", 25, PanelInput::Pointer);
    through->showAt({100, 100});
    taking->showAt({400, 100});
    const auto throughWindow = windowOf("Panel Through");
    const auto takingWindow = windowOf("Panel Taking");
    ASSERT_TRUE(throughWindow && takingWindow);
    EXPECT_NE(takerOfClickAt(throughWindow->rect.center()), throughWindow->id);
    EXPECT_EQ(takerOfClickAt(takingWindow->rect.center()), takingWindow->id);
}

TEST_F(X11PanelsTest, LeaveTheFocusWhereItIs) {
    const testing::X11Probe probe(testDesktop().connection());
    const xcb_window_t before = probe.focus();
    const auto shown = panel("Panel Focus", 25, PanelInput::Pointer);
    shown->showAt({100, 100});
    ASSERT_TRUE(windowOf("Panel Focus").has_value());
    settle();
    EXPECT_EQ(probe.focus(), before);
}

TEST_F(X11PanelsTest, StandByLevelAboveOtherPrograms) {
    testing::TestClient::Options options;
    options.rect = QRect(50, 500, 300, 200);
    const testing::TestClient client(testDesktop(), options);
    const auto high = panel("Panel High", 1001);
    const auto low = panel("Panel Low", 25);
    const auto alsoLow = panel("Panel Also Low", 25);
    high->showAt({100, 100});
    low->showAt({100, 100});
    alsoLow->showAt({100, 100});
    const auto highId = windowOf("Panel High")->id;
    const auto lowId = windowOf("Panel Low")->id;
    const auto alsoLowId = windowOf("Panel Also Low")->id;
    settle();
    EXPECT_GT(heightOf(highId), heightOf(alsoLowId));
    EXPECT_GT(heightOf(alsoLowId), heightOf(lowId));
    EXPECT_GT(heightOf(lowId), heightOf(client.window()));
    low->showAt({110, 100});
    settle();
    EXPECT_GT(heightOf(highId), heightOf(lowId));
    EXPECT_GT(heightOf(lowId), heightOf(alsoLowId));
}

} // namespace snapvane
