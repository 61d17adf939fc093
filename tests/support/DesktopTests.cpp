// Proves that the virtual desktop, the injected input and the looking glass can be relied on.

#include "AgentProcess.h"
#include "Injector.h"
#include "InputGrabs.h"
#include "PictureCompare.h"
#include "PngFile.h"
#include "QtPrinting.h"
#include "ScreenGrab.h"
#include "ServerResources.h"
#include "TestClient.h"
#include "TestPattern.h"
#include "VirtualDesktop.h"
#include "Wait.h"
#include "X11Probe.h"

#include <gtest/gtest.h>

#include <QBuffer>

#include <X11/keysym.h>
#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

QImage patternImage(const QRect& rect, uint32_t seed = 0) {
    QImage image(rect.size(), QImage::Format_RGB32);
    for (int y = 0; y < rect.height(); ++y) {
        for (int x = 0; x < rect.width(); ++x) {
            image.setPixel(x, y, 0xff000000U | patternPixel(rect.x() + x, rect.y() + y, seed));
        }
    }
    return image;
}

class EveryCompositor : public ::testing::TestWithParam<Compositor> {};

TEST_P(EveryCompositor, ShowsRootAndClientPixelForPixel) {
    DesktopOptions options;
    options.compositor = GetParam();
    const VirtualDesktop desktop(options);
    TestClient::Options clientOptions;
    clientOptions.rect = QRect(300, 200, 400, 300);
    clientOptions.overrideRedirect = true;
    const TestClient client(desktop, clientOptions);
    const QImage screen = grabSettledScreen(desktop.connection(), desktop.rect());

    const QRect corner(1000, 700, 600, 300);
    EXPECT_TRUE(samePicture(patternImage(corner), screen.copy(corner), u"support-root"_s));
    EXPECT_TRUE(samePicture(patternImage(QRect(0, 0, 400, 300), 1), screen.copy(client.rect()),
                            u"support-client"_s));
    const bool composited = GetParam() != Compositor::None;
    EXPECT_EQ(X11Probe(desktop.connection()).selectionOwner("_NET_WM_CM_S0") != XCB_WINDOW_NONE,
              composited);
}

INSTANTIATE_TEST_SUITE_P(Desktop, EveryCompositor,
                         ::testing::Values(Compositor::None, Compositor::Picom,
                                           Compositor::PicomFading, Compositor::Xcompmgr,
                                           Compositor::XcompmgrFading));

class PlainDesktop : public ::testing::Test {
protected:
    static void SetUpTestSuite() { desktop = std::make_unique<VirtualDesktop>(); }
    static void TearDownTestSuite() { desktop.reset(); }

    static std::unique_ptr<VirtualDesktop> desktop;
    X11Probe probe{desktop->connection()};
    Injector injector{desktop->connection()};
};

std::unique_ptr<VirtualDesktop> PlainDesktop::desktop;

TEST_F(PlainDesktop, InjectedMotionMovesThePointer) {
    injector.moveTo({123, 456});
    EXPECT_EQ(probe.pointer(), QPoint(123, 456));
    injector.moveTo({1919, 1079});
    EXPECT_EQ(probe.pointer(), QPoint(1919, 1079));
}

TEST_F(PlainDesktop, InjectedKeysReachTheServer) {
    injector.pressKeyCode(injector.keyCodeFor(XK_Shift_L));
    const auto cookie = xcb_query_pointer(desktop->connection(), desktop->connection().root());
    const Reply<xcb_query_pointer_reply_t> state(
        xcb_query_pointer_reply(desktop->connection(), cookie, nullptr));
    injector.releaseKeyCode(injector.keyCodeFor(XK_Shift_L));
    ASSERT_TRUE(state);
    EXPECT_NE(state->mask & XCB_MOD_MASK_SHIFT, 0);
    EXPECT_THROW((void)injector.keyCodeFor(0x1fffffU), std::runtime_error);
}

TEST_F(PlainDesktop, GrabsOfOthersAreSeen) {
    EXPECT_FALSE(isPointerGrabbed(desktop->connection()));
    EXPECT_FALSE(isKeyboardGrabbed(desktop->connection()));
    {
        const RudeGrab grab(desktop->display(), RudeGrab::What::Keyboard);
        EXPECT_TRUE(isKeyboardGrabbed(desktop->connection()));
        EXPECT_FALSE(isPointerGrabbed(desktop->connection()));
    }
    EXPECT_TRUE(waitUntil([] { return !isKeyboardGrabbed(desktop->connection()); },
                          std::chrono::seconds(2)));
}

TEST_F(PlainDesktop, ManagedClientStandsWhereItWasPut) {
    TestClient::Options options;
    options.rect = QRect(500, 300, 320, 240);
    const TestClient client(*desktop, options);
    EXPECT_EQ(client.rect(), options.rect);
}

TEST_F(PlainDesktop, LiveClientPaintsWholeFramesOneAfterTheOther) {
    TestClient::Options options;
    options.mode = u"live"_s;
    options.rect = QRect(500, 300, 320, 240);
    options.overrideRedirect = true;
    const TestClient client(*desktop, options);
    const uint32_t before = client.frame();
    EXPECT_TRUE(waitUntil([&] { return client.frame() > before + 20; }, std::chrono::seconds(2)));
    const QImage image = grabScreen(desktop->connection(), options.rect);
    const uint32_t frame = liveFrameOf(image.pixel(0, 0));
    EXPECT_EQ(image.pixel(319, 239) & 0xffffffU, livePixel(frame, 319, 239));
    EXPECT_EQ(image.pixel(17, 203) & 0xffffffU, livePixel(frame, 17, 203));
}

TEST_F(PlainDesktop, SlowClientPaintsLate) {
    TestClient::Options below;
    below.mode = u"slow"_s;
    below.rect = QRect(100, 100, 200, 200);
    below.title = u"Below"_s;
    below.overrideRedirect = true;
    const TestClient slow(*desktop, below);
    {
        TestClient::Options above = below;
        above.mode = u"pattern"_s;
        above.title = u"Above"_s;
        above.seed = 2;
        const TestClient cover(*desktop, above);
    }
    const auto isPainted = [&] {
        return grabScreen(desktop->connection(), below.rect) ==
               patternImage(QRect(0, 0, 200, 200), 1);
    };
    EXPECT_FALSE(isPainted());
    EXPECT_TRUE(waitUntil(isPainted, std::chrono::seconds(2)));
}

TEST_F(PlainDesktop, ServerResourcesOfAProcessAreCounted) {
    const ResourceCounts before = serverResourcesOf(desktop->connection(), getpid());
    ASSERT_TRUE(before.contains(u"PIXMAP"_s));
    const xcb_pixmap_t pixmap = xcb_generate_id(desktop->connection());
    xcb_create_pixmap(desktop->connection(), 24, pixmap, desktop->connection().root(), 10, 10);
    const ResourceCounts with = serverResourcesOf(desktop->connection(), getpid());
    EXPECT_EQ(with.at(u"PIXMAP"_s), before.at(u"PIXMAP"_s) + 1);
    xcb_free_pixmap(desktop->connection(), pixmap);
    EXPECT_EQ(serverResourcesOf(desktop->connection(), getpid()), before);
}

TEST(OtherDesktops, TwoScreensCanBeUnpluggedAndPluggedIn) {
    DesktopOptions options;
    options.screens = ScreenSet::TwoSideBySide;
    VirtualDesktop desktop(options);
    const X11Probe probe(desktop.connection());
    EXPECT_EQ(probe.monitorCount(), 2);
    EXPECT_EQ(desktop.screenRect(1), QRect(1920, 0, 1920, 1080));
    desktop.removeRightScreen();
    EXPECT_EQ(probe.monitorCount(), 1);
    desktop.addRightScreen();
    EXPECT_EQ(probe.monitorCount(), 2);
}

TEST(OtherDesktops, TrayComesAndGoes) {
    DesktopOptions options;
    options.trayHost = TrayHost::Trayer;
    VirtualDesktop desktop(options);
    const X11Probe probe(desktop.connection());
    EXPECT_NE(probe.selectionOwner("_NET_SYSTEM_TRAY_S0"), XCB_WINDOW_NONE);
    desktop.stopTray();
    EXPECT_TRUE(
        waitUntil([&] { return probe.selectionOwner("_NET_SYSTEM_TRAY_S0") == XCB_WINDOW_NONE; },
                  std::chrono::seconds(2)));
}

TEST(Children, EndIsReported) {
    const DesktopFolders folders;
    ChildProcess::Spec spec;
    spec.program = u"sh"_s;
    spec.environment = folders.environment();
    spec.outputFile = folders.log(u"sh"_s);
    spec.arguments = {u"-c"_s, u"exit 7"_s};
    ChildProcess leaving(spec);
    const auto exit = leaving.waitForExit(std::chrono::seconds(5));
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->code, 7);

    spec.arguments = {u"-c"_s, u"sleep 60"_s};
    ChildProcess staying(spec);
    EXPECT_TRUE(staying.isRunning());
    EXPECT_EQ(staying.end().signal, SIGTERM);
}

TEST(Children, FolderPermissionsBindThemWhenAsked) {
    const DesktopFolders folders;
    ChildProcess::Spec spec;
    spec.program = u"sh"_s;
    spec.environment = folders.environment();
    spec.outputFile = folders.log(u"sh"_s);
    spec.arguments = {u"-c"_s, u"chmod 0555 \"$HOME\"; touch \"$HOME/file\""_s};
    spec.withoutFileOverrides = true;
    ChildProcess child(spec);
    const auto exit = child.waitForExit(std::chrono::seconds(5));
    ASSERT_TRUE(exit);
    EXPECT_NE(exit->code, 0);
}

TEST(Pictures, DifferencesAreFound) {
    const QImage one = patternImage(QRect(0, 0, 20, 10));
    QImage other = one;
    EXPECT_TRUE(samePicture(one, other, u"support-same"_s));
    other.setPixel(7, 3, 0xff123456U);
    const auto result = samePicture(one, other, u"support-different"_s);
    EXPECT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("1 of 200 pixels differ, the first at 7,3"),
              std::string::npos);
    EXPECT_FALSE(samePicture(one, one.copy(0, 0, 19, 10), u"support-different"_s));
    EXPECT_FALSE(samePicture(one, QImage(), u"support-different"_s));
}

TEST(Pictures, OnlyWholePngFilesAreAccepted) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    patternImage(QRect(0, 0, 20, 10)).save(&buffer, "PNG");
    const auto header = readWholePng(bytes);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->size, QSize(20, 10));
    EXPECT_EQ(header->colourType, 2);
    EXPECT_EQ(header->bitDepth, 8);
    EXPECT_FALSE(readWholePng(bytes.chopped(1)));
    EXPECT_FALSE(readWholePng(bytes + 'x'));
    QByteArray damaged = bytes;
    damaged[bytes.size() / 2] = static_cast<char>(damaged.at(bytes.size() / 2) ^ 1);
    EXPECT_FALSE(readWholePng(damaged));
}

} // namespace

} // namespace snapvane::testing
