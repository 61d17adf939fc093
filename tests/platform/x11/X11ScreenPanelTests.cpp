#include "platform/x11/X11ScreenPanel.h"

#include "X11TestDesktop.h"
#include "platform/x11/RootGrabber.h"
#include "platform/x11/ShownWindowsWatch.h"
#include "platform/x11/X11Panels.h"
#include "platform/x11/X11Screens.h"
#include "support/Injector.h"
#include "support/QtPrinting.h"
#include "support/ScreenGrab.h"
#include "support/TestClient.h"
#include "support/X11Probe.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

/// Fills itself with one colour and notes the keys that it is given.
class Sheet : public QWidget {
public:
    explicit Sheet(const QColor& color) : m_color(color) { setFocusPolicy(Qt::StrongFocus); }

    QString typed;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), m_color); }
    void keyPressEvent(QKeyEvent* event) override { typed += event->text(); }

private:
    QColor m_color;
};

class X11ScreenPanelTest : public ::testing::Test {
protected:
    std::unique_ptr<ScreenPanel> cover(std::size_t screen, const QColor& color = Qt::magenta) {
        auto sheet = std::make_unique<Sheet>(color);
        m_sheet = sheet.get();
        return m_panels.cover(std::move(sheet), m_screens.list().at(screen),
                              {u"Panel Cover"_s, 1000, [this] { ++m_outdated; }});
    }
    std::unique_ptr<ScreenPanel> coverWithKeyboard(std::size_t screen) {
        auto panel = cover(screen);
        panel->orderFront();
        panel->takeFocus();
        // Two connections: what was sent first need not be done first.
        EXPECT_TRUE(waitForEvents([] { return focus() == window()->id; }));
        return panel;
    }
    static QImage glass() {
        return testing::grabScreen(
            testDesktop().connection(),
            QRect(0, 0, 2 * testScreenSize.width(), testScreenSize.height()));
    }
    /// True when the pixels of the screen, all of them and no others, are of that colour.
    static bool isExactly(const QColor& color, std::size_t screen) {
        const QImage shown = glass();
        const int left = static_cast<int>(screen) * testScreenSize.width();
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                const bool isInside = x >= left && x < left + testScreenSize.width();
                if ((shown.pixelColor(x, y) == color) != isInside) {
                    return false;
                }
            }
        }
        return true;
    }
    static xcb_window_t focus() { return testing::X11Probe(testDesktop().connection()).focus(); }
    static std::optional<testing::WindowInfo> window() {
        return testing::X11Probe(testDesktop().connection()).viewableWindowNamed(u"Panel Cover"_s);
    }
    static void setFocus(xcb_window_t window) {
        xcb_connection_t* connection = testDesktop().connection();
        xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        xcb_flush(connection);
        ASSERT_TRUE(waitForEvents([window] { return focus() == window; }));
    }
    static testing::TestClient::Options clientAt(const QRect& rect) {
        testing::TestClient::Options options;
        options.rect = rect;
        // No window manager is to have a say in the focus.
        options.overrideRedirect = true;
        return options;
    }

    x11::X11Screens m_screens;
    x11::RootGrabber m_grabber;
    x11::X11Panels m_panels{m_screens, m_grabber};
    Sheet* m_sheet = nullptr;
    int m_outdated = 0;
};

/// A compositor on the test's desktop for as long as it lives.
class Compositing {
public:
    Compositing() { testDesktop().startCompositor(testing::Compositor::Xcompmgr); }
    ~Compositing() {
        testDesktop().stopCompositor();
        waitForEvents([] { return !x11::hasCompositor(x11::qtServer()); });
    }
    Compositing(const Compositing&) = delete;
    Compositing& operator=(const Compositing&) = delete;
};

} // namespace

TEST_F(X11ScreenPanelTest, CoversItsScreenToThePixel) {
    for (const std::size_t screen : {0U, 1U}) {
        const auto panel = cover(screen);
        panel->orderFront();
        EXPECT_TRUE(waitForEvents([screen] { return isExactly(Qt::magenta, screen); })) << screen;
        ASSERT_TRUE(window());
        EXPECT_TRUE(window()->overrideRedirect);
        EXPECT_EQ(window()->className, u"Snapvane"_s);
        const int left = static_cast<int>(screen) * testScreenSize.width();
        EXPECT_EQ(window()->rect.topLeft(), QPoint(left, 0));
        settle();
        EXPECT_TRUE(isExactly(Qt::magenta, screen)) << "Qt moves or resizes nothing afterwards.";
    }
}

TEST_F(X11ScreenPanelTest, IsUnseenBeforeItIsOrderedFront) {
    const QImage before = glass();
    const auto panel = cover(0);
    settle();
    EXPECT_EQ(glass(), before);
}

TEST_F(X11ScreenPanelTest, HasThePictureOfTheScreenWithoutACompositor) {
    const testing::TestClient client(testDesktop(), clientAt({1400, 100, 300, 200}));
    const QImage before = glass();
    const auto panel = cover(1);
    EXPECT_FALSE(panel->fades());
    QImage backdrop = panel->backdrop();
    ASSERT_FALSE(backdrop.isNull());
    EXPECT_EQ(backdrop.devicePixelRatio(), m_screens.list().at(1).backingScale);
    backdrop.setDevicePixelRatio(1);
    EXPECT_EQ(
        backdrop.convertToFormat(QImage::Format_RGB32),
        before.copy(testScreenSize.width(), 0, testScreenSize.width(), testScreenSize.height()));
}

TEST_F(X11ScreenPanelTest, UncoversTheScreenAtOnce) {
    const testing::TestClient client(testDesktop(), clientAt({200, 100, 300, 200}));
    // Kept for as long as windows are shown, as the capturer has it.
    const x11::ShownWindowsWatch watch;
    const QImage before = glass();
    auto panel = cover(0);
    panel->orderFront();
    ASSERT_TRUE(waitForEvents([] { return isExactly(Qt::magenta, 0); }));
    panel.reset();
    x11::roundTrip(x11::qtServer());
    EXPECT_EQ(glass(), before);
}

TEST_F(X11ScreenPanelTest, TakesTheKeyboardAndGivesItBack) {
    const testing::TestClient client(testDesktop(), clientAt({200, 100, 300, 200}));
    setFocus(client.window());
    auto panel = cover(0);
    panel->orderFront();
    EXPECT_EQ(focus(), client.window());
    panel->takeFocus();
    ASSERT_TRUE(window());
    EXPECT_TRUE(waitForEvents([] { return focus() == window()->id; }));
    m_sheet->setFocus();
    testing::Injector hands(testDesktop().connection());
    hands.tapKey('k');
    EXPECT_TRUE(waitForEvents([this] { return m_sheet->typed == u"k"_s; }));
    panel.reset();
    EXPECT_TRUE(waitForEvents([&client] { return focus() == client.window(); }));
}

TEST_F(X11ScreenPanelTest, TakesTheKeyboardAgainAndStillKnowsWhoHadIt) {
    const testing::TestClient first(testDesktop(), clientAt({200, 100, 300, 200}));
    const testing::TestClient second(testDesktop(), clientAt({600, 100, 300, 200}));
    setFocus(first.window());
    auto panel = coverWithKeyboard(0);
    setFocus(second.window());
    panel->takeFocus();
    EXPECT_TRUE(waitForEvents([] { return focus() == window()->id; }));
    panel->takeFocus();
    panel.reset();
    EXPECT_TRUE(waitForEvents([&second] { return focus() == second.window(); }));
}

TEST_F(X11ScreenPanelTest, LeavesTheKeyboardToWhoeverTookIt) {
    const testing::TestClient first(testDesktop(), clientAt({200, 100, 300, 200}));
    const testing::TestClient second(testDesktop(), clientAt({600, 100, 300, 200}));
    setFocus(first.window());
    auto panel = coverWithKeyboard(0);
    setFocus(second.window());
    panel.reset();
    settle();
    EXPECT_EQ(focus(), second.window());
}

TEST_F(X11ScreenPanelTest, SurvivesThatWhoHadTheKeyboardIsGone) {
    std::optional<testing::TestClient> client(std::in_place, testDesktop(),
                                              clientAt({200, 100, 300, 200}));
    setFocus(client->window());
    auto panel = cover(0);
    panel->orderFront();
    panel->takeFocus();
    client.reset();
    panel.reset();
    settle();
    EXPECT_FALSE(window());
    EXPECT_NE(focus(), xcb_window_t{XCB_INPUT_FOCUS_NONE}) << "Keys would reach nobody.";
}

TEST_F(X11ScreenPanelTest, TellsWhenCompositingBegins) {
    auto panel = cover(0);
    panel->orderFront();
    settle();
    EXPECT_EQ(m_outdated, 0);
    const Compositing compositing;
    EXPECT_TRUE(waitForEvents([this] { return m_outdated == 1; }));
    settle();
    EXPECT_EQ(m_outdated, 1);
}

TEST_F(X11ScreenPanelTest, FadesUnderACompositor) {
    const Compositing compositing;
    const auto panel = cover(0);
    EXPECT_TRUE(panel->fades());
    EXPECT_TRUE(panel->backdrop().isNull());
    const QImage before = glass();
    panel->orderFront();
    settle();
    EXPECT_EQ(glass(), before) << "It begins unseen.";
    panel->setOpacity(1);
    EXPECT_TRUE(waitForEvents([] { return isExactly(Qt::magenta, 0); }));
    panel->setOpacity(0.5);
    const QRgb old = before.pixel(640, 700);
    EXPECT_TRUE(waitForEvents(
        [old] { return std::abs(qRed(glass().pixel(640, 700)) - (255 + qRed(old)) / 2) <= 2; }));
    panel->setOpacity(0);
    EXPECT_TRUE(waitForEvents([&before] { return glass() == before; }));
}

TEST_F(X11ScreenPanelTest, ShowsTheLiveScreenUnderACompositor) {
    const Compositing compositing;
    QColor veil(Qt::black);
    veil.setAlphaF(0.5F);
    const auto panel = cover(0, veil);
    panel->orderFront();
    panel->setOpacity(1);
    settle();
    const QImage before = glass();
    const testing::TestClient client(testDesktop(), clientAt({200, 100, 300, 200}));
    EXPECT_TRUE(waitForEvents(
        [&before] { return glass().copy(200, 100, 300, 200) != before.copy(200, 100, 300, 200); }));
    EXPECT_EQ(glass().copy(700, 400, 300, 200), before.copy(700, 400, 300, 200));
}

TEST_F(X11ScreenPanelTest, TellsWhenCompositingEnds) {
    auto compositing = std::make_unique<Compositing>();
    const auto panel = cover(0);
    panel->orderFront();
    settle();
    EXPECT_EQ(m_outdated, 0);
    compositing.reset();
    EXPECT_TRUE(waitForEvents([this] { return m_outdated == 1; }));
}

TEST_F(X11ScreenPanelTest, StandsInFrontOfNotices) {
    auto content = std::make_unique<QWidget>();
    content->resize(120, 40);
    const auto notice = m_panels.create(std::move(content), {.name = u"Panel Low"_s, .level = 25});
    const auto panel = cover(0);
    panel->orderFront();
    notice->showAt({100, 300});
    EXPECT_TRUE(waitForEvents([] { return isExactly(Qt::magenta, 0); }));
}

} // namespace snapvane
