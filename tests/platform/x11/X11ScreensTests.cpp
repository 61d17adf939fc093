#include "platform/x11/X11Screens.h"

#include "X11TestDesktop.h"
#include "support/Injector.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>

namespace snapvane {

namespace {

/// The right screen is there again after each test, and Qt knows.
class X11ScreensTest : public ::testing::Test {
public:
    X11ScreensTest() {
        m_screens.list();
        QObject::connect(&m_screens, &Screens::changed, &m_screens, [this] { ++m_changes; });
    }
    ~X11ScreensTest() override {
        if (m_removed) {
            testDesktop().addRightScreen();
            waitForEvents([] { return QGuiApplication::screens().size() == 2; });
        }
    }

protected:
    void removeRightScreen() {
        m_removed = true;
        testDesktop().removeRightScreen();
    }
    void addRightScreen() {
        testDesktop().addRightScreen();
        m_removed = false;
    }

    x11::X11Screens m_screens;
    int m_changes = 0;

private:
    bool m_removed = false;
};

/// A dock of somebody else's at the bottom of the left screen.
class Dock {
public:
    explicit Dock(std::uint32_t height) : m_window(xcb_generate_id(connection())) {
        const auto width = static_cast<std::uint16_t>(testScreenSize.width());
        const auto top = static_cast<std::int16_t>(testScreenSize.height() - 30);
        xcb_create_window(connection(), XCB_COPY_FROM_PARENT, m_window, connection().root(), 0, top,
                          width, 30, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
        const xcb_atom_t dock = connection().atom("_NET_WM_WINDOW_TYPE_DOCK");
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, m_window,
                            connection().atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
        const std::array<std::uint32_t, 12> strut = {0, 0, 0, height, 0, 0,
                                                     0, 0, 0, 0,      0, width - 1U};
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, m_window,
                            connection().atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32, 12,
                            strut.data());
        xcb_map_window(connection(), m_window);
        connection().sync();
    }
    ~Dock() {
        xcb_destroy_window(connection(), m_window);
        connection().sync();
    }
    Dock(const Dock&) = delete;
    Dock& operator=(const Dock&) = delete;

private:
    static const testing::XcbConnection& connection() { return testDesktop().connection(); }

    xcb_window_t m_window;
};

} // namespace

TEST_F(X11ScreensTest, ListsBothMonitors) {
    const ScreenList screens = m_screens.list();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0].name, QStringLiteral("L"));
    EXPECT_EQ(screens[1].name, QStringLiteral("R"));
    EXPECT_EQ(screens[0].nativeFrame, (DeviceRect{{0, 0}, {1280, 800}}));
    EXPECT_EQ(screens[1].nativeFrame, (DeviceRect{{1280, 0}, {1280, 800}}));
    EXPECT_EQ(screens[0].frame, (GlobalRect{{0, 0}, {1280, 800}}));
    EXPECT_EQ(screens[1].frame, (GlobalRect{{1280, 0}, {1280, 800}}));
    EXPECT_NE(screens[0].id, screens[1].id);
    EXPECT_EQ(screens[0].backingScale, 1);
    EXPECT_EQ(m_screens.mainScreen(), screens[0]);
    EXPECT_EQ(m_screens.nativeFrames(),
              (std::vector<DeviceRect>{screens[0].nativeFrame, screens[1].nativeFrame}));
}

TEST_F(X11ScreensTest, KnowsWhereThePointerIs) {
    testing::Injector injector(testDesktop().connection());
    injector.moveTo({1300, 30});
    EXPECT_EQ(m_screens.pointerLocation(), (GlobalPoint{1300, 769}));
    injector.moveTo({0, 799});
    EXPECT_EQ(m_screens.pointerLocation(), (GlobalPoint{0, 0}));
    injector.moveTo({2559, 0});
    EXPECT_EQ(m_screens.pointerLocation(), (GlobalPoint{2559, 799}));
}

TEST_F(X11ScreensTest, TellsOnceWhenAScreenGoesAndComes) {
    removeRightScreen();
    EXPECT_TRUE(waitForEvents([this] { return m_changes > 0; }));
    EXPECT_EQ(m_screens.list().size(), 1U);
    settle();
    EXPECT_EQ(m_changes, 1);
    addRightScreen();
    EXPECT_TRUE(waitForEvents([this] { return m_changes > 1; }));
    EXPECT_EQ(m_screens.list().size(), 2U);
    settle();
    EXPECT_EQ(m_changes, 2);
}

TEST_F(X11ScreensTest, TellsAlsoWhenSomebodyHasReadTheListInTheMeantime) {
    // As anything does that Qt tells of the change before the screens tell of theirs.
    QObject reader;
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &reader,
                     [this] { m_screens.list(); });
    removeRightScreen();
    EXPECT_TRUE(waitForEvents([this] { return m_changes > 0; }));
    EXPECT_EQ(m_screens.list().size(), 1U);
}

TEST_F(X11ScreensTest, LeavesDocksOutOfTheVisibleFrame) {
    {
        const Dock dock(30);
        EXPECT_TRUE(
            waitForEvents([this] { return m_screens.list()[0].visibleFrame.minY() == 30; }));
        EXPECT_EQ(m_screens.list()[0].visibleFrame, (GlobalRect{{0, 30}, {1280, 770}}));
        EXPECT_EQ(m_screens.list()[1].visibleFrame, m_screens.list()[1].frame);
        EXPECT_EQ(m_screens.list()[0].frame, (GlobalRect{{0, 0}, {1280, 800}}));
    }
    EXPECT_TRUE(waitForEvents([this] { return m_screens.list()[0].visibleFrame.minY() == 0; }));
}

} // namespace snapvane
