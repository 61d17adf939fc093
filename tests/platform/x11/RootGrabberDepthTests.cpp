#include "platform/x11/RootGrabber.h"

#include "support/QtPrinting.h"
#include "support/VirtualDesktop.h"

#include <gtest/gtest.h>

#include <array>

#include <xcb/composite.h>

namespace snapvane {

namespace {

/// A bare desktop of another depth; connections opened meanwhile lead to it.
class OtherDesktop {
public:
    explicit OtherDesktop(int depth) : m_desktop(options(depth)) {
        qputenv("DISPLAY", m_desktop.display().toLocal8Bit());
    }
    ~OtherDesktop() { qputenv("DISPLAY", m_displayBefore); }
    OtherDesktop(const OtherDesktop&) = delete;
    OtherDesktop& operator=(const OtherDesktop&) = delete;

    /// Draws one pixel of the given value on the root window.
    void put(int x, int y, std::uint32_t value) const {
        const testing::XcbConnection& connection = m_desktop.connection();
        const xcb_gcontext_t gc = xcb_generate_id(connection);
        xcb_create_gc(connection, gc, connection.root(), XCB_GC_FOREGROUND, &value);
        const xcb_rectangle_t pixel = {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                       1, 1};
        xcb_poly_fill_rectangle(connection, connection.root(), gc, 1, &pixel);
        xcb_free_gc(connection, gc);
        connection.sync();
    }

    /// A window of one colour over that area; all windows keep their pixels from now on.
    xcb_window_t cover(const QRect& rect, std::uint32_t value) const {
        const testing::XcbConnection& connection = m_desktop.connection();
        xcb_composite_redirect_subwindows(connection, connection.root(),
                                          XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        const xcb_window_t window = xcb_generate_id(connection);
        const std::array<std::uint32_t, 2> values = {value, 1};
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, connection.root(),
                          static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                          static_cast<std::uint16_t>(rect.width()),
                          static_cast<std::uint16_t>(rect.height()), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(connection, window);
        connection.sync();
        return window;
    }

private:
    static testing::DesktopOptions options(int depth) {
        testing::DesktopOptions result;
        result.screenSize = {333, 77};
        result.depth = depth;
        result.windowManager = testing::WindowManager::None;
        result.sessionBus = testing::SessionBus::No;
        return result;
    }

    QByteArray m_displayBefore = qgetenv("DISPLAY");
    testing::VirtualDesktop m_desktop;
};

struct Pixel {
    int x, y;
    std::uint32_t value;
    QRgb color;
};

void expectPixels(int depth, const std::vector<Pixel>& pixels) {
    const OtherDesktop desktop(depth);
    for (const Pixel& pixel : pixels) {
        desktop.put(pixel.x, pixel.y, pixel.value);
    }
    x11::RootGrabber grabber;
    const DeviceRect all = {{0, 0}, {333, 77}};
    const QImage image = grabber.grab(all, {all});
    ASSERT_EQ(image.size(), QSize(333, 77));
    // An area that begins and ends in the middle of rows.
    const QImage part = grabber.grab({{1, 1}, {301, 75}}, {all});
    for (const Pixel& pixel : pixels) {
        SCOPED_TRACE(::testing::Message() << pixel.x << "," << pixel.y);
        EXPECT_EQ(image.pixel(pixel.x, pixel.y) | 0xff000000U, pixel.color);
        if (part.rect().contains(pixel.x - 1, pixel.y - 1)) {
            EXPECT_EQ(part.pixel(pixel.x - 1, pixel.y - 1) | 0xff000000U, pixel.color);
        }
    }
}

} // namespace

TEST(RootGrabberDepth, ReadsDepth16) {
    expectPixels(16, {{0, 0, 0xffff, qRgb(255, 255, 255)},
                      {1, 1, 0xf800, qRgb(255, 0, 0)},
                      {2, 1, 0x07e0, qRgb(0, 255, 0)},
                      {301, 75, 0x001f, qRgb(0, 0, 255)},
                      {332, 76, 16 << 11 | 32 << 5 | 8, qRgb(132, 130, 66)}});
}

TEST(RootGrabberDepth, ReadsDepth24) {
    expectPixels(24, {{0, 0, 0xffffff, qRgb(255, 255, 255)},
                      {1, 1, 0x123456, qRgb(0x12, 0x34, 0x56)},
                      {301, 75, 0x0000ff, qRgb(0, 0, 255)},
                      {332, 76, 0xff8001, qRgb(255, 128, 1)}});
}

TEST(RootGrabberDepth, ReadsDepth30) {
    expectPixels(30, {{0, 0, 0x3fffffff, qRgb(255, 255, 255)},
                      {1, 1, 1023U << 20, qRgb(255, 0, 0)},
                      {2, 1, 1023U << 10, qRgb(0, 255, 0)},
                      {301, 75, 1023U, qRgb(0, 0, 255)},
                      {332, 76, 512U << 20 | 1U << 10 | 3U, qRgb(128, 0, 1)}});
}

/// The pixels of what lies beneath a window come in the same depth.
TEST(RootGrabberDepth, LeavesWindowsOutInDepth16) {
    const OtherDesktop desktop(16);
    desktop.cover({10, 10, 100, 40}, 0xf800);
    const xcb_window_t excluded = desktop.cover({50, 20, 200, 50}, 0x001f);
    x11::RootGrabber grabber;
    const DeviceRect all = {{0, 0}, {333, 77}};
    const QImage with = grabber.grab(all, {all});
    const QImage without = grabber.grab(all, {all}, {excluded});
    EXPECT_EQ(with.pixel(60, 30), qRgb(0, 0, 255));
    EXPECT_EQ(without.pixel(60, 30), qRgb(255, 0, 0));
    EXPECT_EQ(without.pixel(20, 20), qRgb(255, 0, 0));
    EXPECT_EQ(without.pixel(200, 60), qRgb(0, 0, 0));
}

} // namespace snapvane
