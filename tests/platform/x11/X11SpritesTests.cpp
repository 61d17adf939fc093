// Sprites on a desktop without a compositor.

#include "SpriteFixture.h"
#include "platform/x11/RoundedShape.h"
#include "support/Injector.h"
#include "support/ServerResources.h"
#include "support/TestClient.h"

#include <QRegion>

#include <unistd.h>

#include <xcb/xfixes.h>

namespace snapvane {

namespace {

class X11SpritesTest : public SpriteTest {
protected:
    /// The child of the root window that takes the input there.
    static xcb_window_t takerOfInputAt(const QPoint& point) {
        const x11::Server server = x11::qtServer();
        const auto cookie = xcb_translate_coordinates(
            server.connection, server.root(), server.root(), static_cast<std::int16_t>(point.x()),
            static_cast<std::int16_t>(point.y()));
        const auto reply =
            x11::owned(xcb_translate_coordinates_reply(server.connection, cookie, nullptr));
        return reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
    }

    /// What the server shows of the window, from its upper-left corner.
    static QRegion shapeOf(xcb_window_t window) {
        constexpr std::uint8_t boundingShape = 0;
        xcb_connection_t* connection = testDesktop().connection();
        // The extension answers those who have named their version.
        x11::owned(xcb_xfixes_query_version_reply(
            connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
        const xcb_xfixes_region_t region = xcb_generate_id(connection);
        xcb_xfixes_create_region_from_window(connection, region, window, boundingShape);
        const auto reply = x11::owned(xcb_xfixes_fetch_region_reply(
            connection, xcb_xfixes_fetch_region(connection, region), nullptr));
        xcb_xfixes_destroy_region(connection, region);
        if (!reply) {
            return QRegion(0, 0, 9999, 9999);
        }
        QRegion result;
        const xcb_rectangle_t* blocks = xcb_xfixes_fetch_region_rectangles(reply.get());
        for (int i = 0; i < xcb_xfixes_fetch_region_rectangles_length(reply.get()); ++i) {
            result += QRect(blocks[i].x, blocks[i].y, blocks[i].width, blocks[i].height);
        }
        return result;
    }
};

/// A window of another program under the sprites that remembers its clicks. Closed with its
/// connection.
class ClickedWindow {
public:
    explicit ClickedWindow(const QRect& rect)
        : m_connection(testDesktop().display()), m_window(xcb_generate_id(m_connection)) {
        const std::array<std::uint32_t, 2> values = {1, XCB_EVENT_MASK_BUTTON_PRESS |
                                                            XCB_EVENT_MASK_POINTER_MOTION};
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_connection.root(),
                          static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                          static_cast<std::uint16_t>(rect.width()),
                          static_cast<std::uint16_t>(rect.height()), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
        xcb_map_window(m_connection, m_window);
        m_connection.sync();
    }

    xcb_window_t id() const { return m_window; }
    /// Where the clicks since the last call were, on the desktop.
    std::vector<QPoint> clicks() {
        m_connection.sync();
        std::vector<QPoint> result;
        while (const auto event = x11::owned(xcb_poll_for_event(m_connection))) {
            if ((event->response_type & 0x7f) == XCB_BUTTON_PRESS) {
                const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(*event);
                result.emplace_back(press.root_x, press.root_y);
            }
        }
        return result;
    }

private:
    testing::XcbConnection m_connection;
    xcb_window_t m_window;
};

TEST_F(X11SpritesTest, AreNotSeenUntilTheyAreShown) {
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    EXPECT_FALSE(line->isVisible());
    EXPECT_FALSE(loupe->isVisible());
    EXPECT_FALSE(windowOf("Sprite Line").has_value());
    EXPECT_FALSE(windowOf("Sprite Loupe").has_value());
    EXPECT_EQ(glass(everything()), bare());
    line->hide();
    loupe->hide();
    EXPECT_EQ(glass(everything()), bare());
}

TEST_F(X11SpritesTest, AreWindowsOfTheProgram) {
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    line->showAt(screen(), {10, 20, 30, 40});
    loupe->showAt(screen(), {100, 200}, patternPicture({50, 60}));
    for (const auto& [name, rect] : {std::pair("Sprite Line", QRect(10, 20, 30, 40)),
                                     {"Sprite Loupe", QRect(100, 200, 50, 60)}}) {
        SCOPED_TRACE(name);
        const auto window = windowOf(name);
        ASSERT_TRUE(window.has_value());
        EXPECT_TRUE(window->overrideRedirect);
        EXPECT_EQ(window->className, QStringLiteral("Snapvane"));
        EXPECT_EQ(window->instanceName, QStringLiteral("snapvane"));
        EXPECT_EQ(window->rect, rect);
    }
}

TEST_F(X11SpritesTest, ASolidOneShowsItsColourAndNothingElse) {
    const auto line = solid("Sprite Line");
    const PixelRect areas[] = {
        {100, 0, 1, 800}, {0, 799, 1280, 1}, {0, 0, 1, 1}, {1279, 799, 1, 1}, {300, 200, 57, 33}};
    for (std::size_t index = 0; index < 2; ++index) {
        for (const PixelRect& area : areas) {
            SCOPED_TRACE(::testing::Message() << "screen " << index << " at " << area.x);
            line->showAt(screen(index), area);
            EXPECT_TRUE(line->isVisible());
            const QRect onDesktop =
                area.toQRect().translated(static_cast<int>(index) * testScreenSize.width(), 0);
            // The places it has been at before are the desktop's again.
            EXPECT_EQ(glass(everything()), desktopWith(onDesktop));
        }
    }
}

TEST_F(X11SpritesTest, AnImageShowsItsPixelsAndNothingElse) {
    const auto loupe = image("Sprite Loupe");
    EXPECT_FALSE(loupe->isTranslucent());
    int seed = 1;
    for (const QPoint place : {QPoint(200, 100), QPoint(201, 100), QPoint(0, 0), QPoint(1200, 300),
                               QPoint(-40, -50), QPoint(2500, 700)}) {
        SCOPED_TRACE(place.x());
        const auto picture = patternPicture({160, 164}, static_cast<std::uint32_t>(++seed));
        loupe->showAt(screen(), {place.x(), place.y()}, picture);
        EXPECT_EQ(glass(everything()), desktopWith(place, picture.image));
    }
}

TEST_F(X11SpritesTest, PlacesCountFromTheScreensCorner) {
    const auto loupe = image("Sprite Loupe");
    const auto picture = patternPicture({160, 164});
    loupe->showAt(screen(1), {20, 30}, picture);
    EXPECT_EQ(glass(everything()), desktopWith({1300, 30}, picture.image));
    loupe->showAt(screen(0), {20, 30}, picture);
    EXPECT_EQ(glass(everything()), desktopWith({20, 30}, picture.image));
}

TEST_F(X11SpritesTest, APicturesMemoryIsFreeAfterwards) {
    const auto loupe = image("Sprite Loupe");
    auto picture = patternPicture({160, 164});
    const QImage before = picture.image.copy();
    loupe->showAt(screen(), {20, 30}, picture);
    picture.image.fill(0xffffffff);
    EXPECT_EQ(glass(everything()), desktopWith({20, 30}, before));
}

TEST_F(X11SpritesTest, ANewPictureInTheSamePlaceIsSeen) {
    const auto loupe = image("Sprite Loupe");
    for (std::uint32_t seed = 1; seed < 5; ++seed) {
        const auto picture = patternPicture({160, 164}, seed);
        loupe->showAt(screen(), {20, 30}, picture);
        EXPECT_EQ(glass(everything()), desktopWith({20, 30}, picture.image));
    }
}

TEST_F(X11SpritesTest, ChangeTheirSize) {
    const auto loupe = image("Sprite Loupe");
    for (const QSize size : {QSize(160, 164), QSize(320, 328), QSize(240, 246), QSize(160, 164)}) {
        SCOPED_TRACE(size.width());
        const auto picture = patternPicture(size);
        loupe->showAt(screen(1), {20, 30}, picture);
        EXPECT_EQ(glass(everything()), desktopWith({1300, 30}, picture.image));
    }
}

TEST_F(X11SpritesTest, AreCutToTheirShape) {
    const auto loupe = image("Sprite Loupe");
    struct Case {
        QSize size;
        std::vector<RoundedArea> shape;
    };
    const Case cases[] = {{{160, 164}, {{{19, 7, 122, 122}, 61}, {{40, 140, 80, 17}, 6}}},
                          {{160, 164}, {{{19, 7, 122, 122}, 61}, {{20, 140, 120, 17}, 6}}},
                          {{320, 328}, {{{39, 15, 242, 242}, 121}, {{80, 280, 160, 34}, 12}}},
                          {{160, 164}, {{{19, 7, 122, 122}, 61}, {{40, 140, 80, 17}, 6}}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.size.width());
        SpritePicture picture = patternPicture(c.size);
        picture.shape = c.shape;
        loupe->showAt(screen(), {200, 100}, picture);
        QRegion shape;
        for (const RoundedArea& part : c.shape) {
            const PixelSize size = {part.area.width, part.area.height};
            for (const xcb_rectangle_t& row :
                 x11::roundedRows(size, part.radius, x11::ShapeEdge::Centres)) {
                shape += QRect(row.x + part.area.x, row.y + part.area.y, row.width, row.height);
            }
        }
        EXPECT_EQ(shapeOf(windowOf("Sprite Loupe")->id), shape);
        QImage expected = bare().copy();
        for (const QRect& part : shape) {
            for (int y = part.top(); y <= part.bottom(); ++y) {
                for (int x = part.left(); x <= part.right(); ++x) {
                    expected.setPixel(200 + x, 100 + y, picture.image.pixel(x, y));
                }
            }
        }
        EXPECT_EQ(glass(everything()), expected);
    }
}

TEST_F(X11SpritesTest, HiddenTheyAreGoneAtOnce) {
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    for (int round = 0; round < 3; ++round) {
        line->showAt(screen(), {10, 0, 1, 800});
        loupe->showAt(screen(), {100, 200}, patternPicture({50, 60}));
        EXPECT_NE(glass(everything()), bare());
        line->hide();
        loupe->hide();
        EXPECT_FALSE(line->isVisible());
        EXPECT_FALSE(loupe->isVisible());
        EXPECT_EQ(glass(everything()), bare());
    }
}

TEST_F(X11SpritesTest, DestroyedTheyAreGoneAtOnce) {
    auto line = solid("Sprite Line");
    auto loupe = image("Sprite Loupe");
    line->showAt(screen(), {10, 0, 1, 800});
    loupe->showAt(screen(), {100, 200}, patternPicture({50, 60}));
    line.reset();
    loupe.reset();
    EXPECT_EQ(glass(everything()), bare());
    EXPECT_FALSE(windowOf("Sprite Line").has_value());
    EXPECT_FALSE(windowOf("Sprite Loupe").has_value());
}

TEST_F(X11SpritesTest, ShownAgainTheyAreBack) {
    const auto line = solid("Sprite Line");
    line->showAt(screen(), {10, 0, 1, 800});
    line->hide();
    line->showAt(screen(), {10, 0, 1, 800});
    EXPECT_EQ(glass(everything()), desktopWith(QRect(10, 0, 1, 800)));
    settle();
    EXPECT_EQ(glass(everything()), desktopWith(QRect(10, 0, 1, 800)));
}

TEST_F(X11SpritesTest, MovesLeaveAnotherProgramsWindowAsItWas) {
    testing::TestClient::Options options;
    options.rect = QRect(50, 100, 400, 300);
    const testing::TestClient client(testDesktop(), options);
    const QImage before = glass(everything());
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    for (int x = 40; x < 500; x += 9) {
        line->showAt(screen(), {x, 0, 1, 800});
        loupe->showAt(screen(), {x + 18, 150}, patternPicture({160, 164}));
    }
    line->hide();
    loupe->hide();
    EXPECT_TRUE(isBecoming(before, std::chrono::seconds(3)));
}

TEST_F(X11SpritesTest, LetClicksThrough) {
    ClickedWindow below(QRect(0, 0, 2560, 800));
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    line->showAt(screen(), {300, 0, 5, 800});
    SpritePicture round = patternPicture({160, 164});
    round.shape = {{{20, 8, 120, 120}, 60}};
    loupe->showAt(screen(), {400, 200}, round);
    testing::Injector injector(testDesktop().connection());
    for (const QPoint place :
         {QPoint(302, 400), QPoint(480, 268), QPoint(401, 201), QPoint(700, 50)}) {
        injector.click(place);
        EXPECT_EQ(below.clicks(), std::vector<QPoint>{place});
    }
    line->showAt(screen(), {600, 0, 5, 800});
    loupe->showAt(screen(1), {400, 200}, patternPicture({320, 328}));
    for (const QPoint place : {QPoint(602, 400), QPoint(1280 + 560, 400)}) {
        injector.click(place);
        EXPECT_EQ(below.clicks(), std::vector<QPoint>{place}) << "moved and resized";
    }
}

TEST_F(X11SpritesTest, TakeNoInputAnywhere) {
    const ClickedWindow below(QRect(0, 0, 2560, 800));
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    line->showAt(screen(), {300, 0, 5, 800});
    loupe->showAt(screen(), {400, 200}, patternPicture({160, 164}));
    ASSERT_TRUE(windowOf("Sprite Line") && windowOf("Sprite Loupe"));
    for (int y = 0; y < 800; y += 9) {
        for (int x = 300; x < 305; ++x) {
            ASSERT_EQ(takerOfInputAt({x, y}), below.id()) << x << ',' << y;
        }
    }
    for (int y = 200; y < 364; y += 3) {
        for (int x = 400; x < 560; x += 3) {
            ASSERT_EQ(takerOfInputAt({x, y}), below.id()) << x << ',' << y;
        }
    }
}

TEST_F(X11SpritesTest, LeaveTheFocusWhereItIs) {
    testing::TestClient::Options options;
    options.rect = QRect(50, 100, 400, 300);
    const testing::TestClient client(testDesktop(), options);
    const testing::X11Probe probe(testDesktop().connection());
    testing::Injector(testDesktop().connection()).click({200, 200});
    ASSERT_TRUE(testing::waitUntil([&] { return probe.focus() == client.window(); },
                                   std::chrono::seconds(3)));
    const auto line = solid("Sprite Line");
    const auto loupe = image("Sprite Loupe");
    line->showAt(screen(), {300, 0, 5, 800});
    loupe->showAt(screen(), {150, 150}, patternPicture({160, 164}));
    settle();
    EXPECT_EQ(probe.focus(), client.window());
    line->hide();
    loupe->hide();
    settle();
    EXPECT_EQ(probe.focus(), client.window());
    EXPECT_EQ(probe.number(testDesktop().connection().root(), "_NET_ACTIVE_WINDOW"),
              client.window());
}

/// More pixels than the server takes in one request.
TEST_F(X11SpritesTest, MayBeLargerThanARequest) {
    const QSize size(2560, 1900);
    const std::uint32_t longest = xcb_get_maximum_request_length(x11::qtServer().connection) * 4;
    ASSERT_GT(static_cast<std::uint32_t>(size.width() * size.height() * 4), longest);
    const auto loupe = image("Sprite Loupe");
    const auto picture = patternPicture(size);
    for (const int top : {0, -600, -1100}) {
        loupe->showAt(screen(), {0, top}, picture);
        EXPECT_EQ(glass(everything()), desktopWith({0, top}, picture.image)) << top;
    }
}

TEST_F(X11SpritesTest, LeaveNothingInTheServer) {
    const auto use = [this](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            auto line = solid("Sprite Line");
            auto loupe = image("Sprite Loupe");
            line->showAt(screen(), {300 + i, 0, 5, 800});
            SpritePicture round = patternPicture({160, 164});
            round.shape = {{{20, 8, 120, 120}, 60.0 - i}};
            loupe->showAt(screen(), {i, 200}, round);
            if (i % 2 == 0) {
                loupe->hide();
            }
        }
        x11::roundTrip(x11::qtServer());
    };
    use(2);
    const auto before = testing::serverResourcesOf(testDesktop().connection(), getpid());
    use(20);
    const auto after = testing::serverResourcesOf(testDesktop().connection(), getpid());
    EXPECT_FALSE(before.empty());
    EXPECT_EQ(after, before);
}

TEST_F(X11SpritesTest, ManyMovesUseOneWindow) {
    const auto loupe = image("Sprite Loupe");
    loupe->showAt(screen(), {0, 0}, patternPicture({160, 164}));
    const xcb_window_t window = windowOf("Sprite Loupe")->id;
    for (int i = 0; i < 50; ++i) {
        loupe->showAt(screen(i % 2 == 0 ? 1 : 0), {i, i},
                      patternPicture(i % 2 == 0 ? QSize(320, 328) : QSize(160, 164)));
        if (i % 5 == 0) {
            loupe->hide();
        }
    }
    EXPECT_EQ(windowOf("Sprite Loupe")->id, window);
}

} // namespace

} // namespace snapvane
