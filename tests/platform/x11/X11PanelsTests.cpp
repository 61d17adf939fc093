#include "platform/x11/X11Panels.h"

#include "X11TestDesktop.h"
#include "platform/x11/RootGrabber.h"
#include "platform/x11/RoundedShape.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/Xcb.h"
#include "support/QtPrinting.h"
#include "support/ScreenGrab.h"
#include "support/TestClient.h"
#include "support/TestPattern.h"
#include "support/X11Probe.h"

#include <gtest/gtest.h>

#include <QRegion>
#include <QWidget>

#include <xcb/xfixes.h>

namespace snapvane {

namespace {

/// The program knows one server, whose atoms it asks for once. Tests that stand on another server
/// must not be the first to ask.
class AtomsOfTheTestDesktop : public ::testing::Environment {
public:
    void SetUp() override { x11::compositorSelection(x11::qtServer()); }
};

[[maybe_unused]] const auto* const atoms =
    ::testing::AddGlobalTestEnvironment(new AtomsOfTheTestDesktop);

class X11PanelsTest : public ::testing::Test {
protected:
    std::unique_ptr<Panel> panel(const char* name, int level,
                                 PanelInput input = PanelInput::ClickThrough,
                                 double cornerRadius = 0) {
        auto content = std::make_unique<QWidget>();
        content->resize(120, 40);
        m_content = content.get();
        PanelOptions options;
        options.cornerRadius = cornerRadius;
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

    /// What the server shows of the window, from its upper-left corner.
    static QRegion shapeOf(xcb_window_t window) {
        xcb_connection_t* connection = testDesktop().connection();
        // The extension answers those who have named their version.
        x11::owned(xcb_xfixes_query_version_reply(
            connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
        const xcb_xfixes_region_t region = xcb_generate_id(connection);
        constexpr std::uint8_t boundingShape = 0;
        xcb_xfixes_create_region_from_window(connection, region, window, boundingShape);
        const auto reply = x11::owned(xcb_xfixes_fetch_region_reply(
            connection, xcb_xfixes_fetch_region(connection, region), nullptr));
        xcb_xfixes_destroy_region(connection, region);
        if (!reply) {
            return {};
        }
        return regionOf(xcb_xfixes_fetch_region_rectangles(reply.get()),
                        xcb_xfixes_fetch_region_rectangles_length(reply.get()));
    }
    static QRegion regionOf(const xcb_rectangle_t* blocks, int count) {
        QRegion region;
        for (int i = 0; i < count; ++i) {
            region += QRect(blocks[i].x, blocks[i].y, blocks[i].width, blocks[i].height);
        }
        return region;
    }
    static QRegion roundedShape(PixelSize size, double radius,
                                x11::ShapeEdge edge = x11::ShapeEdge::Centres) {
        const auto rows = x11::roundedRows(size, radius, edge);
        return regionOf(rows.data(), static_cast<int>(rows.size()));
    }

    x11::X11Screens m_screens;
    x11::RootGrabber m_grabber;
    x11::X11Panels m_panels{m_screens, m_grabber};
    /// Of the panel made last.
    QWidget* m_content = nullptr;
};

/// A compositor on the test's desktop for as long as it lives.
class RunningCompositor {
public:
    RunningCompositor() { testDesktop().startCompositor(testing::Compositor::Xcompmgr); }
    ~RunningCompositor() {
        testDesktop().stopCompositor();
        waitForEvents([] { return !x11::hasCompositor(x11::qtServer()); });
    }
    RunningCompositor(const RunningCompositor&) = delete;
    RunningCompositor& operator=(const RunningCompositor&) = delete;
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

TEST_F(X11PanelsTest, AreCutToRoundCornersWithoutACompositor) {
    const auto shown = panel("Panel Round", 25, PanelInput::ClickThrough, 10);
    shown->showAt({100, 100});
    const auto window = windowOf("Panel Round");
    ASSERT_TRUE(window.has_value());
    settle();
    EXPECT_EQ(shapeOf(window->id), roundedShape({120, 40}, 10));
}

// Runs a second time on screens of different scales.
TEST_F(X11PanelsTest, AreCutToRoundCornersOnEveryScreen) {
    const ScreenList screens = m_screens.list();
    ASSERT_EQ(screens.size(), 2U);
    const auto shown = panel("Panel Moving", 25, PanelInput::ClickThrough, 10);
    for (const std::size_t index : {1U, 0U, 1U, 0U}) {
        SCOPED_TRACE(index);
        const Screen& screen = screens.at(index);
        const int width = qRound(120 * screen.backingScale);
        const int height = qRound(40 * screen.backingScale);
        shown->showAt({screen.frame.midX() - 60, screen.frame.midY()});
        EXPECT_TRUE(waitForEvents([width, height] {
            const auto window = windowOf("Panel Moving");
            return window && window->rect.size() == QSize(width, height);
        }));
        settle();
        EXPECT_EQ(shapeOf(windowOf("Panel Moving")->id),
                  roundedShape({width, height}, 10 * screen.backingScale));
        shown->hide();
        settle();
    }
}

TEST_F(X11PanelsTest, ShowTheDesktopInTheirCutCorners) {
    const auto shown = panel("Panel Corners", 25, PanelInput::ClickThrough, 10);
    m_content->setStyleSheet(QStringLiteral("background: black"));
    shown->showAt({100, 100});
    const auto window = windowOf("Panel Corners");
    ASSERT_TRUE(window.has_value());
    settle();
    const QRect rect = window->rect;
    const QImage picture = testing::grabSettledScreen(testDesktop().connection(), rect);
    ASSERT_EQ(picture.size(), QSize(120, 40));
    for (const QPoint corner : {QPoint(0, 0), QPoint(119, 0), QPoint(0, 39), QPoint(119, 39)}) {
        const QPoint place = rect.topLeft() + corner;
        EXPECT_EQ(picture.pixel(corner) & RGB_MASK, testing::patternPixel(place.x(), place.y()));
    }
    for (const QPoint inside : {QPoint(60, 0), QPoint(0, 20), QPoint(119, 20), QPoint(4, 4)}) {
        EXPECT_EQ(picture.pixel(inside) & RGB_MASK, 0U) << inside.x() << ',' << inside.y();
    }
}

TEST_F(X11PanelsTest, KeepRoundCornersWhenTheirContentChangesItsSize) {
    const auto shown = panel("Panel Resized", 25, PanelInput::ClickThrough, 10);
    shown->showAt({100, 100});
    ASSERT_TRUE(windowOf("Panel Resized").has_value());
    for (const QSize size : {QSize(300, 60), QSize(50, 30), QSize(200, 33)}) {
        m_content->resize(size);
        shown->showAt({100, 100});
        EXPECT_TRUE(waitForEvents([size] {
            const auto window = windowOf("Panel Resized");
            return window && window->rect.size() == size;
        }));
        settle();
        EXPECT_EQ(shapeOf(windowOf("Panel Resized")->id),
                  roundedShape({size.width(), size.height()}, 10));
    }
    m_content->resize(80, 40);
    shown->show();
    settle();
    EXPECT_EQ(shapeOf(windowOf("Panel Resized")->id), roundedShape({80, 40}, 10));
}

TEST_F(X11PanelsTest, LetClicksThroughAlsoWithRoundCorners) {
    const auto shown = panel("Panel Round Through", 25, PanelInput::ClickThrough, 10);
    shown->showAt({100, 100});
    const auto window = windowOf("Panel Round Through");
    ASSERT_TRUE(window.has_value());
    settle();
    EXPECT_NE(takerOfClickAt(window->rect.center()), window->id);
}

TEST_F(X11PanelsTest, AreWholeWithoutARadius) {
    const auto shown = panel("Panel Square", 25);
    shown->showAt({100, 100});
    const auto window = windowOf("Panel Square");
    ASSERT_TRUE(window.has_value());
    settle();
    EXPECT_EQ(shapeOf(window->id), QRegion(0, 0, 120, 40));
}

/// Around what they paint, smooth edge included, so that the compositor's shadow fits it.
TEST_F(X11PanelsTest, AreCutToWhatTheyTouchUnderACompositor) {
    const RunningCompositor compositor;
    const auto shown = panel("Panel Composited", 25, PanelInput::ClickThrough, 10);
    EXPECT_TRUE(m_content->testAttribute(Qt::WA_TranslucentBackground));
    shown->showAt({100, 100});
    const auto window = windowOf("Panel Composited");
    ASSERT_TRUE(window.has_value());
    settle();
    EXPECT_EQ(shapeOf(window->id), roundedShape({120, 40}, 10, x11::ShapeEdge::Touched));
}

TEST_F(X11PanelsTest, AreCurrentWhileTransparencyIsShownAsItWas) {
    const auto before = panel("Panel Before", 25);
    EXPECT_TRUE(before->isCurrent());
    {
        const RunningCompositor compositor;
        EXPECT_FALSE(before->isCurrent());
        const auto meanwhile = panel("Panel Meanwhile", 25);
        EXPECT_TRUE(meanwhile->isCurrent());
        testDesktop().stopCompositor();
        EXPECT_TRUE(waitForEvents([&meanwhile] { return !meanwhile->isCurrent(); }));
    }
    EXPECT_TRUE(before->isCurrent());
}

TEST_F(X11PanelsTest, AreShownWhereTheyWereAndInFront) {
    const auto first = panel("Panel First", 25);
    const auto second = panel("Panel Second", 25);
    first->showAt({1400, 300});
    second->showAt({1400, 300});
    const auto window = windowOf("Panel First");
    ASSERT_TRUE(window && windowOf("Panel Second"));
    settle();
    first->hide();
    settle();
    first->show();
    EXPECT_TRUE(first->isVisible());
    const auto again = windowOf("Panel First");
    ASSERT_TRUE(again.has_value());
    settle();
    EXPECT_EQ(windowOf("Panel First")->rect, QRect(1400, 460, 120, 40));
    EXPECT_GT(heightOf(again->id), heightOf(windowOf("Panel Second")->id));
    second->show();
    settle();
    EXPECT_GT(heightOf(windowOf("Panel Second")->id), heightOf(again->id));
}

} // namespace snapvane
