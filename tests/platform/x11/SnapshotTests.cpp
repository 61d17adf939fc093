#include "SnapshotFixture.h"

#include "platform/PlatformError.h"
#include "platform/x11/Xcb.h"
#include "support/RootPicture.h"
#include "support/TestClient.h"
#include "support/TestPattern.h"

#include <atomic>
#include <thread>

namespace snapvane {

using namespace Qt::StringLiterals;

namespace {

using testing::Compositor;
using testing::samePicture;

/// A compositor on the test's desktop for as long as it lives.
class RunningCompositor {
public:
    explicit RunningCompositor(Compositor kind) {
        testDesktop().startCompositor(kind);
        settle();
    }
    ~RunningCompositor() {
        testDesktop().stopCompositor();
        waitForEvents([] { return !x11::hasCompositor(x11::qtServer()); });
    }
    RunningCompositor(const RunningCompositor&) = delete;
    RunningCompositor& operator=(const RunningCompositor&) = delete;
};

/// Gives the root window another background; the pattern is back when it goes.
class OtherRoot {
public:
    explicit OtherRoot(const QStringList& arguments) {
        testDesktop().run(u"xsetroot"_s, arguments);
    }
    ~OtherRoot() { testing::paintRootPattern(testDesktop().connection()); }
    OtherRoot(const OtherRoot&) = delete;
    OtherRoot& operator=(const OtherRoot&) = delete;

    static void announce(const char* property, xcb_atom_t type, std::uint32_t value) {
        const testing::XcbConnection& connection = testDesktop().connection();
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, connection.root(),
                            connection.atom(property), type, 32, 1, &value);
        connection.sync();
    }
    static void withdraw(const char* property) {
        const testing::XcbConnection& connection = testDesktop().connection();
        xcb_delete_property(connection, connection.root(), connection.atom(property));
        connection.sync();
    }
    static void withdrawAll() {
        withdraw("_XROOTPMAP_ID");
        withdraw("ESETROOT_PMAP_ID");
    }
};

constexpr QRect middle(200, 150, 300, 240);

ForeignWindow::Options patterned(const QRect& rect, std::uint32_t seed) {
    ForeignWindow::Options options;
    options.rect = rect;
    options.seed = seed;
    return options;
}

/// A pixmap of the pattern, on the desktop's own connection.
xcb_pixmap_t patternPixmap(QSize size, std::uint32_t seed) {
    const testing::XcbConnection& connection = testDesktop().connection();
    const testing::PixmapPainter painter(connection, connection.root());
    const xcb_pixmap_t pixmap = painter.create(size.width(), size.height());
    painter.paint(pixmap, size.width(), size.height(),
                  [seed](int x, int y) { return testing::patternPixel(x, y, seed); });
    return pixmap;
}

} // namespace

TEST_F(SnapshotTest, IsTheGlassWithoutWindowsOfOurs) {
    const ForeignWindow foreign(patterned(middle, 3));
    const QImage now = settledGlass();
    EXPECT_TRUE(samePicture(now, snapshot(), u"no-own-window"_s));
}

TEST_F(SnapshotTest, ShowsOtherProgramsWindowsWithoutAClass) {
    ForeignWindow::Options options = patterned(middle, 3);
    options.className.clear();
    const ForeignWindow foreign(options);
    const QImage now = settledGlass();
    const auto own = showOwn({300, 200, 400, 100});
    EXPECT_TRUE(samePicture(now, snapshot(), u"no-class"_s));
}

TEST_F(SnapshotTest, LeavesOutSeveralWindowsOfOurs) {
    const ForeignWindow foreign(patterned(middle, 3));
    const QImage before = settledGlass();
    const auto one = showOwn({100, 100, 200, 200});
    const auto two = showOwn({200, 150, 200, 200});
    const auto three = showOwn({1270, 500, 20, 20});
    EXPECT_GT(ownPixels(settledGlass()), 0);
    EXPECT_TRUE(samePicture(before, snapshot(), u"several"_s));
}

TEST_F(SnapshotTest, LeavesOutAShapedWindowOfOurs) {
    const ForeignWindow foreign(patterned(middle, 3));
    const QImage before = settledGlass();
    const auto own = showOwn({150, 120, 200, 200});
    own->setMask(QRegion(0, 0, 200, 200, QRegion::Ellipse));
    settle();
    EXPECT_GT(ownPixels(settledGlass()), 0);
    EXPECT_TRUE(samePicture(before, snapshot(), u"shaped-own"_s));
}

/// The frame with the title bar goes with the window.
TEST_F(SnapshotTest, LeavesOutAManagedWindowWithItsFrame) {
    const testing::TestClient client(testDesktop(), {.rect = QRect(200, 150, 400, 300)});
    settle();
    const QImage before = settledGlass();
    const auto own = showOwn({250, 200, 300, 100}, false, Qt::Window);
    settle();
    const QImage now = settledGlass();
    EXPECT_EQ(ownPixels(now), 300 * 100);
    const testing::X11Probe probe(connection());
    const auto shown = probe.viewableWindowNamed(u"Snapvane Own"_s);
    ASSERT_TRUE(shown.has_value());
    EXPECT_TRUE(client.rect().contains(shown->rect.adjusted(-1, -10, 1, 1)));
    const QPoint title = shown->rect.topLeft() - QPoint(0, 5);
    EXPECT_NE(now.pixel(title), before.pixel(title)) << "there is a frame";
    EXPECT_TRUE(samePicture(before, snapshot(), u"framed-own"_s));
}

TEST_F(SnapshotTest, KeepsAManagedWindowOfAnotherProgramWithItsFrame) {
    const testing::TestClient client(testDesktop(), {.rect = QRect(200, 200, 300, 200)});
    settle();
    const QImage before = settledGlass();
    const auto own = showOwn({180, 170, 100, 100});
    EXPECT_TRUE(samePicture(before, snapshot(), u"framed-foreign"_s));
}

TEST_F(SnapshotTest, IsTheGlassWhenOurWindowIsHidden) {
    const ForeignWindow foreign(patterned(middle, 3));
    const QImage before = settledGlass();
    const auto own = showOwn({250, 200, 300, 100});
    own->hide();
    EXPECT_TRUE(samePicture(before, snapshot(), u"hidden"_s));
}

TEST_F(SnapshotTest, IsTheGlassWhenOurWindowIsMinimised) {
    const ForeignWindow foreign(patterned(middle, 3));
    const QImage before = settledGlass();
    const auto own = showOwn({250, 200, 300, 100}, false, Qt::Window);
    settle();
    own->showMinimized();
    const testing::X11Probe probe(connection());
    ASSERT_TRUE(waitForEvents(
        [&probe] { return !probe.viewableWindowNamed(QStringLiteral("Snapvane Own")); }));
    EXPECT_TRUE(samePicture(before, snapshot(), u"minimised"_s));
}

/// Listed as ours, then gone before the picture is taken.
TEST_F(SnapshotTest, TakesNoHarmFromAnExcludedWindowThatIsGone) {
    const ForeignWindow foreign(patterned(middle, 3));
    const QImage before = settledGlass();
    auto own = showOwn({250, 200, 300, 100});
    const xcb_window_t id = own->id();
    own.reset();
    settle();
    const QImage taken =
        m_capturer.grabber().grab({{0, 0}, {2560, 800}}, m_screens.nativeFrames(), {id, 0, 12345});
    EXPECT_TRUE(samePicture(before, taken, u"excluded-gone"_s));
}

TEST_F(SnapshotTest, LeavesOutWindowsOfAnotherProgramWhenAsked) {
    const QImage before = settledGlass();
    const x11::SubwindowRedirection held(x11::qtServer());
    x11::roundTrip(x11::qtServer());
    const ForeignWindow foreign(patterned(middle, 3));
    const ForeignWindow kept(patterned({1000, 100, 50, 50}, 4));
    const QImage taken = m_capturer.grabber().grab({{200, 100}, {500, 300}},
                                                   m_screens.nativeFrames(), {foreign.id()});
    EXPECT_TRUE(samePicture(before.copy(200, 100, 500, 300), taken, u"foreign-excluded"_s));
}

TEST_F(SnapshotTest, ShowsEveryScreenAtItsDensity) {
    const QImage before = settledGlass();
    const auto own = std::make_unique<OwnWindow>(unmanaged);
    own->resize(300, 200);
    own->move(1400, 100);
    own->show();
    ASSERT_TRUE(waitForEvents([&own] { return own->isPainted(); }));
    EXPECT_GT(ownPixels(settledGlass()), 0);
    const DisplaySnapshotList list = snapshots();
    const ScreenList screens = m_screens.list();
    ASSERT_EQ(list.size(), 2U);
    ASSERT_EQ(screens.size(), 2U);
    for (std::size_t i = 0; i < list.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(list[i].screenFrame, screens[i].frame);
        EXPECT_EQ(list[i].backingScale, screens[i].backingScale);
        EXPECT_EQ(list[i].cgImage.size(), testScreenSize);
        EXPECT_TRUE(samePicture(before.copy(testDesktop().screenRect(static_cast<int>(i))),
                                list[i].cgImage, u"density"_s));
    }
}

class SnapshotOverRootTest : public SnapshotTest {
protected:
    /// With a window of ours, and part of another one's, over the background.
    void expectTheBackground(const QString& name) {
        const ForeignWindow foreign(patterned({450, 300, 100, 200}, 3));
        const QImage before = settledGlass();
        const auto own = showOwn({203, 151, 300, 240});
        EXPECT_GT(ownPixels(settledGlass()), 0);
        EXPECT_TRUE(samePicture(before, snapshot(), name));
    }
};

TEST_F(SnapshotOverRootTest, ShowsASolidColour) {
    const OtherRoot root({u"-solid"_s, u"#336699"_s});
    OtherRoot::withdrawAll();
    expectTheBackground(u"root-solid"_s);
}

TEST_F(SnapshotOverRootTest, ShowsATiledBitmap) {
    const OtherRoot root(
        {u"-mod"_s, u"7"_s, u"5"_s, u"-fg"_s, u"#ff8800"_s, u"-bg"_s, u"#112233"_s});
    OtherRoot::withdrawAll();
    expectTheBackground(u"root-tiled"_s);
}

TEST_F(SnapshotOverRootTest, ShowsWhatIsReallyThereNotWhatWasAnnounced) {
    const OtherRoot root({u"-solid"_s, u"#336699"_s});
    expectTheBackground(u"root-stale"_s);
}

TEST_F(SnapshotOverRootTest, ShowsTheAnnouncedPicture) {
    expectTheBackground(u"root-announced"_s);
}

TEST_F(SnapshotOverRootTest, TilesTheAnnouncedPictureUnderACompositor) {
    const OtherRoot root({u"-solid"_s, u"black"_s});
    const xcb_pixmap_t pixmap = patternPixmap({61, 47}, 9);
    OtherRoot::withdraw("ESETROOT_PMAP_ID");
    OtherRoot::announce("_XROOTPMAP_ID", XCB_ATOM_PIXMAP, pixmap);
    const RunningCompositor compositor(Compositor::Picom);
    const auto own = showOwn({203, 151, 300, 240});
    const QImage taken = snapshot();
    int wrong = 0;
    for (int y = 151; y < 391; ++y) {
        for (int x = 203; x < 503; ++x) {
            wrong +=
                (taken.pixel(x, y) & RGB_MASK) == testing::patternPixel(x % 61, y % 47, 9) ? 0 : 1;
        }
    }
    EXPECT_EQ(wrong, 0);
    xcb_free_pixmap(connection(), pixmap);
}

TEST_F(SnapshotOverRootTest, TakesTheSecondNameForTheAnnouncedPicture) {
    const OtherRoot root({u"-solid"_s, u"black"_s});
    const xcb_pixmap_t pixmap = patternPixmap({61, 47}, 9);
    const xcb_pixmap_t gone = patternPixmap({8, 8}, 1);
    xcb_free_pixmap(connection(), gone);
    OtherRoot::announce("_XROOTPMAP_ID", XCB_ATOM_PIXMAP, gone);
    OtherRoot::announce("ESETROOT_PMAP_ID", XCB_ATOM_PIXMAP, pixmap);
    const RunningCompositor compositor(Compositor::Xcompmgr);
    const auto own = showOwn({203, 151, 300, 240});
    EXPECT_EQ(snapshot().pixel(300, 200) & RGB_MASK, testing::patternPixel(300 % 61, 200 % 47, 9));
    xcb_free_pixmap(connection(), pixmap);
}

TEST_F(SnapshotOverRootTest, IsGreyUnderACompositorThatWasToldOfNoPicture) {
    const OtherRoot root({u"-solid"_s, u"black"_s});
    OtherRoot::withdrawAll();
    {
        const RunningCompositor compositor(Compositor::Xcompmgr);
        expectTheBackground(u"root-grey"_s);
        const auto own = showOwn({203, 151, 300, 240});
        EXPECT_EQ(snapshot().pixel(300, 200) & RGB_MASK, 0x808080U);
    }
}

/// A pixmap of another depth cannot be a background, nor can something that is no pixmap.
TEST_F(SnapshotOverRootTest, TakesNothingElseForAPicture) {
    const OtherRoot root({u"-solid"_s, u"black"_s});
    const xcb_pixmap_t bitmap = xcb_generate_id(connection());
    xcb_create_pixmap(connection(), 1, bitmap, connection().root(), 8, 8);
    OtherRoot::announce("_XROOTPMAP_ID", XCB_ATOM_PIXMAP, bitmap);
    OtherRoot::announce("ESETROOT_PMAP_ID", XCB_ATOM_CARDINAL, bitmap);
    {
        const RunningCompositor compositor(Compositor::Picom);
        const auto own = showOwn({203, 151, 300, 240});
        EXPECT_EQ(snapshot().pixel(300, 200) & RGB_MASK, 0x808080U);
    }
    xcb_free_pixmap(connection(), bitmap);
}

/// While windows of another program come and go, the rest of the picture stays right.
TEST_F(SnapshotTest, TakesNoHarmFromWindowsThatComeAndGo) {
    const QRect busy(220, 170, 80, 80);
    const QImage before = settledGlass();
    const auto own = showOwn(middle);
    std::atomic<bool> stop = false;
    std::thread other([&stop, &busy] {
        while (!stop) {
            const ForeignWindow passing(patterned(busy, 5));
        }
    });
    QImage shown = before;
    for (int i = 0; i < 25; ++i) {
        QImage taken = snapshot();
        QPainter painter(&taken);
        painter.drawImage(busy.topLeft(), before, busy);
        painter.end();
        if (!samePicture(before, taken, u"coming-and-going"_s)) {
            shown = taken;
            break;
        }
    }
    stop = true;
    other.join();
    EXPECT_TRUE(samePicture(before, shown, u"coming-and-going"_s));
}

TEST_F(SnapshotTest, LeavesNothingBehindInTheServer) {
    const auto own = showOwn(middle);
    snapshot();
    const testing::X11Probe probe(connection());
    const auto before = probe.windows().size();
    for (int i = 0; i < 3; ++i) {
        snapshot();
    }
    EXPECT_EQ(probe.windows().size(), before);
    EXPECT_TRUE(probe.windowsNamed(u"Snapvane Background"_s).empty());
}

} // namespace snapvane
