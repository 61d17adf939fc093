#include "platform/x11/X11Canvas.h"

#include "X11TestDesktop.h"
#include "platform/x11/Xcb.h"

#include <gtest/gtest.h>

#include <random>

namespace snapvane {

namespace {

constexpr int width = 200;
constexpr int height = 150;
constexpr int border = 2;

/// A pixmap and a picture of it, on Qt's connection.
class Sheet {
public:
    Sheet(std::uint8_t depth, xcb_render_pictformat_t format)
        : m_pixmap(xcb_generate_id(m_server.connection)),
          m_picture(xcb_generate_id(m_server.connection)) {
        xcb_create_pixmap(m_server.connection, depth, m_pixmap, m_server.root(), width, height);
        xcb_render_create_picture(m_server.connection, m_picture, m_pixmap, format, 0, nullptr);
    }
    ~Sheet() {
        xcb_render_free_picture(m_server.connection, m_picture);
        xcb_free_pixmap(m_server.connection, m_pixmap);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    xcb_render_picture_t picture() const { return m_picture; }

    /// Fills the sheet with colours that differ from place to place.
    void paintPattern(std::uint16_t level) const {
        for (std::int16_t x = 0; x < width; x = static_cast<std::int16_t>(x + 5)) {
            const auto red = static_cast<std::uint16_t>(x * 300);
            const xcb_rectangle_t column = {x, 0, 5, height};
            xcb_render_fill_rectangles(m_server.connection, XCB_RENDER_PICT_OP_SRC, m_picture,
                                       {red, level, static_cast<std::uint16_t>(~red), 0xffff}, 1,
                                       &column);
        }
    }

    std::vector<std::uint32_t> pixels() const {
        const auto cookie = xcb_get_image(m_server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_pixmap,
                                          0, 0, width, height, ~0U);
        const auto reply = x11::owned(xcb_get_image_reply(m_server.connection, cookie, nullptr));
        if (!reply) {
            return {};
        }
        std::vector<std::uint32_t> result(static_cast<std::size_t>(width) * height);
        std::memcpy(result.data(), xcb_get_image_data(reply.get()), result.size() * 4);
        return result;
    }

    std::uint32_t at(int x, int y) const {
        return pixels().at(static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x));
    }

private:
    x11::Server m_server = x11::qtServer();
    xcb_pixmap_t m_pixmap;
    xcb_render_picture_t m_picture;
};

/// What an overlay shows: a veil with a hole, the hole's outline and a label.
struct Scene {
    QRect hole;
    QPoint label;

    QRect labelBox() const { return {label, QSize(40, 14)}; }
    QRect outer() const { return hole.adjusted(-border, -border, border, border); }
    QRegion outline() const { return QRegion(outer()) - QRegion(hole); }
};

QImage labelPicture() {
    QImage image(40, 14, QImage::Format_ARGB32_Premultiplied);
    for (int x = 0; x < 40; ++x) {
        for (int y = 0; y < 14; ++y) {
            image.setPixel(x, y, qPremultiply(qRgba(x * 6, y * 18, 90, 255 - x * 5)));
        }
    }
    return image;
}

/// Draws all of the scene; what may change is up to the canvas's region.
void paint(x11::X11Canvas& canvas, const Scene& scene) {
    canvas.veil({0, 0, width, height});
    canvas.clear(PixelRect::fromQRect(scene.hole));
    for (const QRect& part : scene.outline()) {
        canvas.fill(PixelRect::fromQRect(part), QColor(255, 255, 255, 200));
    }
    canvas.draw({scene.label.x(), scene.label.y()}, labelPicture());
}

/// Where two scenes may differ.
QRegion difference(const Scene& a, const Scene& b) {
    return QRegion(a.hole).xored(b.hole) + a.outline() + b.outline() + a.labelBox() + b.labelBox();
}

class Scenes {
public:
    Scene next() {
        Scene scene;
        const QPoint a = point();
        const QPoint b = point();
        scene.hole = QRect(QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
                           QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y())));
        scene.label = point() - QPoint(20, 7);
        return scene;
    }

private:
    QPoint point() {
        return {std::uniform_int_distribution(0, width)(m_random),
                std::uniform_int_distribution(0, height)(m_random)};
    }

    std::mt19937 m_random{7};
};

void expectIncrementalEqualsFull(std::uint8_t depth, xcb_render_pictformat_t format,
                                 const x11::CanvasBackdrop& backdrop) {
    const x11::Server server = x11::qtServer();
    const Sheet incremental(depth, format);
    const Sheet full(depth, format);
    const QRegion everything(0, 0, width, height);
    Scenes scenes;
    Scene scene = scenes.next();
    {
        x11::X11Canvas canvas(server, incremental.picture(), backdrop, everything);
        paint(canvas, scene);
    }
    for (int step = 0; step < 1000; ++step) {
        const Scene next = scenes.next();
        x11::X11Canvas part(server, incremental.picture(), backdrop,
                            difference(scene, next).intersected(QRect(0, 0, width, height)));
        paint(part, next);
        x11::X11Canvas whole(server, full.picture(), backdrop, everything);
        paint(whole, next);
        scene = next;
        ASSERT_EQ(incremental.pixels(), full.pixels()) << "step " << step;
    }
}

} // namespace

TEST(X11Canvas, PaintsPartsOfASeeThroughSurfaceAsItWouldPaintAll) {
    x11::CanvasBackdrop backdrop;
    backdrop.veilAlpha = 77;
    expectIncrementalEqualsFull(32, x11::RenderFormats::of(x11::qtServer()).argb, backdrop);
}

TEST(X11Canvas, PaintsPartsOfAnOpaqueSurfaceAsItWouldPaintAll) {
    const x11::Server server = x11::qtServer();
    const auto format = x11::RenderFormats::of(server).root;
    const std::uint8_t depth = server.screen->root_depth;
    const Sheet plain(depth, format);
    const Sheet veiled(depth, format);
    plain.paintPattern(0xc000);
    veiled.paintPattern(0x3000);
    x11::CanvasBackdrop backdrop;
    backdrop.plain = plain.picture();
    backdrop.veiled = veiled.picture();
    expectIncrementalEqualsFull(depth, format, backdrop);
}

TEST(X11Canvas, BlendsAsItSays) {
    const x11::Server server = x11::qtServer();
    const Sheet sheet(32, x11::RenderFormats::of(server).argb);
    x11::CanvasBackdrop backdrop;
    backdrop.veilAlpha = 102;
    QImage picture(2, 1, QImage::Format_ARGB32_Premultiplied);
    picture.setPixel(0, 0, qRgba(0, 0, 0, 0));
    picture.setPixel(1, 0, qRgba(10, 20, 30, 255));
    x11::X11Canvas canvas(server, sheet.picture(), backdrop, QRegion(0, 0, 100, 100));
    canvas.clear({0, 0, width, height});
    canvas.veil({0, 0, 50, 100});
    canvas.fill({60, 0, 10, 10}, QColor(200, 100, 50));
    canvas.fill({0, 0, 10, 10}, QColor(255, 255, 255, 128));
    canvas.draw({60, 5}, picture);
    EXPECT_EQ(sheet.at(20, 20), 0x66000000U);
    EXPECT_EQ(sheet.at(55, 20), 0U);
    EXPECT_EQ(sheet.at(65, 5), 0xffc86432U);
    EXPECT_EQ(sheet.at(60, 5), 0xffc86432U);
    EXPECT_EQ(sheet.at(61, 5), 0xff0a141eU);
    const std::uint32_t white = sheet.at(5, 5);
    EXPECT_EQ(white & 0xffU, 128U);
    // 128 of the white's alpha and 102 × 127 / 255 of the veil's.
    EXPECT_NEAR(static_cast<double>(white >> 24), 178.8, 1.0);
}

} // namespace snapvane
