#include "platform/x11/StackingOrder.h"

#include "SpriteFixture.h"
#include "support/TestClient.h"

#include <algorithm>

namespace snapvane {

namespace {

/// A window that no window manager touches.
class FreeWindow {
public:
    explicit FreeWindow(xcb_connection_t* connection, const QRect& rect = {10, 10, 50, 50})
        : m_connection(connection), m_id(xcb_generate_id(connection)) {
        const std::array<std::uint32_t, 2> values = {0xff8800, 1};
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_id, x11::qtServer().root(),
                          static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                          static_cast<std::uint16_t>(rect.width()),
                          static_cast<std::uint16_t>(rect.height()), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(connection, m_id);
        xcb_flush(connection);
    }
    ~FreeWindow() {
        xcb_destroy_window(m_connection, m_id);
        xcb_flush(m_connection);
    }
    FreeWindow(const FreeWindow&) = delete;
    FreeWindow& operator=(const FreeWindow&) = delete;

    xcb_window_t id() const { return m_id; }
    void raise() const {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(m_connection, m_id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_id;
};

/// Another program's window, which can be put over everything.
class ForeignWindow {
public:
    explicit ForeignWindow(const QRect& rect = {10, 10, 50, 50})
        : m_connection(testDesktop().display()), m_window(m_connection, rect) {
        raise();
    }
    void raise() const {
        m_window.raise();
        m_connection.sync();
    }
    xcb_window_t id() const { return m_window.id(); }

private:
    testing::XcbConnection m_connection;
    FreeWindow m_window;
};

/// Hears of every change of a window on the desktop.
class Watcher {
public:
    Watcher() : m_connection(testDesktop().display()) {
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, m_connection.root(), XCB_CW_EVENT_MASK, &events);
        m_connection.sync();
    }
    /// The windows that were moved, resized or restacked since the last call.
    std::vector<xcb_window_t> configured() {
        x11::roundTrip(x11::qtServer());
        m_connection.sync();
        std::vector<xcb_window_t> result;
        while (const auto event = x11::owned(xcb_poll_for_event(m_connection))) {
            if ((event->response_type & 0x7f) == XCB_CONFIGURE_NOTIFY) {
                result.push_back(
                    reinterpret_cast<const xcb_configure_notify_event_t&>(*event).window);
            }
        }
        return result;
    }

private:
    testing::XcbConnection m_connection;
};

class StackingOrderTest : public SpriteTest {
public:
    ~StackingOrderTest() override {
        for (const auto& window : m_windows) {
            x11::StackingOrder::remove(window->id());
        }
    }

protected:
    xcb_window_t window() {
        m_windows.push_back(std::make_unique<FreeWindow>(m_server.connection));
        return m_windows.back()->id();
    }
    void raise(xcb_window_t window, int level) {
        x11::StackingOrder::raise(m_server, window, level);
        xcb_flush(m_server.connection);
    }
    void hold(xcb_window_t window, int level) {
        x11::StackingOrder::hold(m_server, window, level);
        xcb_flush(m_server.connection);
    }

    /// The named windows from the lowest to the highest.
    static std::vector<xcb_window_t> orderOf(const std::vector<xcb_window_t>& windows) {
        const x11::Server server = x11::qtServer();
        const auto tree = x11::owned(xcb_query_tree_reply(
            server.connection, xcb_query_tree(server.connection, server.root()), nullptr));
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        std::vector<xcb_window_t> result;
        std::copy_if(children, children + xcb_query_tree_children_length(tree.get()),
                     std::back_inserter(result), [&windows](xcb_window_t child) {
                         return std::find(windows.begin(), windows.end(), child) != windows.end();
                     });
        return result;
    }

    x11::Server m_server = x11::qtServer();

private:
    std::vector<std::unique_ptr<FreeWindow>> m_windows;
};

using Order = std::vector<xcb_window_t>;

TEST_F(StackingOrderTest, AHigherLevelStandsAboveWhateverComesLater) {
    const xcb_window_t loupe = window();
    const xcb_window_t line = window();
    const xcb_window_t overlay = window();
    raise(loupe, 1002);
    raise(line, 1001);
    raise(overlay, 1000);
    EXPECT_EQ(orderOf({overlay, line, loupe}), (Order{overlay, line, loupe}));
    raise(overlay, 1000);
    raise(line, 1001);
    EXPECT_EQ(orderOf({overlay, line, loupe}), (Order{overlay, line, loupe}));
}

TEST_F(StackingOrderTest, RaisedInItsLevelAWindowComesToTheFrontOfIt) {
    const xcb_window_t first = window();
    const xcb_window_t second = window();
    const xcb_window_t above = window();
    raise(above, 2);
    raise(first, 1);
    raise(second, 1);
    EXPECT_EQ(orderOf({first, second, above}), (Order{first, second, above}));
    raise(first, 1);
    EXPECT_EQ(orderOf({first, second, above}), (Order{second, first, above}));
}

TEST_F(StackingOrderTest, HeldInItsLevelAWindowKeepsItsPlace) {
    const xcb_window_t first = window();
    const xcb_window_t second = window();
    const xcb_window_t above = window();
    hold(above, 2);
    hold(first, 1);
    hold(second, 1);
    EXPECT_EQ(orderOf({first, second, above}), (Order{first, second, above}));
    hold(first, 1);
    EXPECT_EQ(orderOf({first, second, above}), (Order{first, second, above}));
}

TEST_F(StackingOrderTest, BothBringAWindowAboveOtherPrograms) {
    const xcb_window_t low = window();
    const xcb_window_t high = window();
    hold(low, 1);
    hold(high, 2);
    const ForeignWindow foreign;
    EXPECT_EQ(orderOf({low, high, foreign.id()}), (Order{low, high, foreign.id()}));
    hold(low, 1);
    EXPECT_EQ(orderOf({low, high, foreign.id()}), (Order{foreign.id(), low, high}));
    foreign.raise();
    raise(low, 1);
    EXPECT_EQ(orderOf({low, high, foreign.id()}), (Order{foreign.id(), low, high}));
    foreign.raise();
    // What is below the level is not the level's concern.
    hold(high, 2);
    EXPECT_EQ(orderOf({low, high, foreign.id()}), (Order{low, foreign.id(), high}));
}

TEST_F(StackingOrderTest, ARemovedWindowIsLeftAlone) {
    const xcb_window_t low = window();
    const xcb_window_t high = window();
    hold(low, 1);
    hold(high, 2);
    x11::StackingOrder::remove(high);
    raise(low, 1);
    EXPECT_EQ(orderOf({low, high}), (Order{high, low}));
    x11::StackingOrder::remove(high);
    x11::StackingOrder::remove(low);
    const xcb_window_t other = window();
    raise(other, 1);
    EXPECT_EQ(orderOf({low, high, other}), (Order{high, low, other}));
}

TEST_F(StackingOrderTest, ADestroyedWindowAmongTheOthersDoesNotStopTheRest) {
    const xcb_window_t low = window();
    const xcb_window_t high = window();
    hold(low, 1);
    {
        const FreeWindow gone(m_server.connection);
        hold(gone.id(), 2);
        x11::StackingOrder::remove(gone.id());
    }
    hold(high, 3);
    const ForeignWindow foreign;
    hold(low, 1);
    EXPECT_EQ(orderOf({low, high, foreign.id()}), (Order{foreign.id(), low, high}));
}

TEST_F(StackingOrderTest, HoldingInPlaceTellsNobodyAnything) {
    const xcb_window_t overlay = window();
    const xcb_window_t vertical = window();
    const xcb_window_t horizontal = window();
    const xcb_window_t loupe = window();
    hold(overlay, 1000);
    hold(vertical, 1001);
    hold(horizontal, 1001);
    hold(loupe, 1002);
    Watcher watcher;
    for (int i = 0; i < 20; ++i) {
        hold(vertical, 1001);
        hold(horizontal, 1001);
        hold(loupe, 1002);
        hold(overlay, 1000);
    }
    EXPECT_EQ(watcher.configured(), Order{});
    raise(loupe, 1002);
    EXPECT_EQ(watcher.configured(), Order{});
    // The watcher is not deaf.
    raise(vertical, 1001);
    EXPECT_FALSE(watcher.configured().empty());
}

TEST_F(StackingOrderTest, OnlyWhatStandsWrongIsMoved) {
    const xcb_window_t low = window();
    const xcb_window_t high = window();
    hold(low, 1);
    hold(high, 2);
    const ForeignWindow foreign;
    hold(high, 2);
    Watcher watcher;
    hold(low, 1);
    EXPECT_EQ(watcher.configured(), Order{low});
}

TEST_F(StackingOrderTest, SpritesAreMovedOnceForAShowing) {
    const auto line = solid("Sprite Line", 1001);
    const auto loupe = image("Sprite Loupe", 1002);
    const auto picture = patternPicture({160, 164});
    line->showAt(screen(), {300, 0, 1, 800});
    loupe->showAt(screen(), {400, 200}, picture);
    const xcb_window_t lineWindow = windowOf("Sprite Line")->id;
    const xcb_window_t loupeWindow = windowOf("Sprite Loupe")->id;
    Watcher watcher;
    line->showAt(screen(), {300, 0, 1, 800});
    loupe->showAt(screen(), {400, 200}, picture);
    EXPECT_EQ(watcher.configured(), Order{}) << "they stood there already";
    line->showAt(screen(), {301, 0, 1, 800});
    EXPECT_EQ(watcher.configured(), Order{lineWindow});
    loupe->showAt(screen(), {401, 200}, picture);
    EXPECT_EQ(watcher.configured(), Order{loupeWindow});
    loupe->showAt(screen(1), {0, 200}, patternPicture({320, 328}));
    EXPECT_EQ(watcher.configured(), Order{loupeWindow});
}

TEST_F(StackingOrderTest, SpritesStandByLevelAboveEverybody) {
    testing::TestClient::Options options;
    options.rect = QRect(50, 100, 400, 300);
    options.overrideRedirect = true;
    const testing::TestClient client(testDesktop(), options);
    const auto loupe = image("Sprite Loupe", 1002);
    const auto line = solid("Sprite Line", 1001);
    const auto overlay = solid("Sprite Overlay", 1000);
    const auto showAll = [&] {
        loupe->showAt(screen(), {100, 150}, patternPicture({160, 164}));
        line->showAt(screen(), {0, 200, 1280, 1});
        overlay->showAt(screen(), {60, 110, 300, 250});
    };
    showAll();
    const Order expected = {client.window(), windowOf("Sprite Overlay")->id,
                            windowOf("Sprite Line")->id, windowOf("Sprite Loupe")->id};
    EXPECT_EQ(orderOf(expected), expected);
    const ForeignWindow foreign({150, 180, 60, 60});
    EXPECT_EQ(orderOf({expected[3], foreign.id()}), (Order{expected[3], foreign.id()}));
    showAll();
    EXPECT_EQ(orderOf(expected), expected);
    EXPECT_EQ(orderOf({expected[1], foreign.id()}), (Order{foreign.id(), expected[1]}));
}

TEST_F(StackingOrderTest, WhatIsSeenIsTheHighestLevel) {
    const auto loupe = image("Sprite Loupe", 1002);
    const auto line = solid("Sprite Line", 1001);
    loupe->showAt(screen(), {100, 150}, plainPicture({160, 164}, 0xff00ff00));
    line->showAt(screen(), {0, 200, 1280, 1});
    const QImage picture = glass({0, 0, 1280, 800});
    EXPECT_EQ(picture.pixel(99, 200), spriteColor);
    EXPECT_EQ(picture.pixel(100, 200), 0xff00ff00);
    EXPECT_EQ(picture.pixel(259, 200), 0xff00ff00);
    EXPECT_EQ(picture.pixel(260, 200), spriteColor);
}

TEST_F(StackingOrderTest, AHiddenSpriteStaysHiddenWhenOthersAreRestacked) {
    const auto loupe = image("Sprite Loupe", 1002);
    const auto line = solid("Sprite Line", 1001);
    loupe->showAt(screen(), {100, 150}, patternPicture({160, 164}));
    line->showAt(screen(), {0, 200, 1280, 1});
    loupe->hide();
    line->showAt(screen(), {0, 201, 1280, 1});
    EXPECT_EQ(glass(everything()), desktopWith(QRect(0, 201, 1280, 1)));
}

} // namespace

} // namespace snapvane
