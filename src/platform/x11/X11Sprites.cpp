#include "platform/x11/X11Sprites.h"

#include "platform/ScreenMapping.h"
#include "platform/x11/PixelConversion.h"
#include "platform/x11/X11Canvas.h"
#include "platform/x11/X11SpriteWindow.h"

#include <algorithm>

namespace snapvane::x11 {

namespace {

using Pixels = X11SpriteWindow::Pixels;

/// With an alpha channel where there is one, though nothing shows through: compositors that draw a
/// shadow around every other window draw none around those.
Pixels pixelsOfSolids(const Server& server) {
    return argbVisual(server) != XCB_NONE ? Pixels::Translucent : Pixels::Opaque;
}

std::uint32_t solidPixel(const QColor& color, const Server& server) {
    return pixelsOfSolids(server) == Pixels::Translucent ? color.rgb()
                                                         : pixelOf(color, rootPixelLayout(server));
}

class X11SolidSprite : public SolidSprite {
public:
    X11SolidSprite(const QColor& color, const SpriteOptions& options)
        : m_server(qtServer()),
          m_window(m_server, options, pixelsOfSolids(m_server), solidPixel(color, m_server)) {
        m_window.mapParked();
    }

    void showAt(const Screen& screen, const PixelRect& area) override {
        m_window.show(ScreenMapping::deviceRect(screen, area));
        xcb_flush(m_server.connection);
    }

    void hide() override { m_window.hide(); }
    bool isVisible() const override { return m_window.isVisible(); }

private:
    Server m_server;
    X11SpriteWindow m_window;
};

/// The window is made anew when the desktop shows transparency in another way than before.
class X11ImageSprite : public ImageSprite {
public:
    explicit X11ImageSprite(SpriteOptions options)
        : m_server(qtServer()), m_layout(rootPixelLayout(m_server)), m_options(std::move(options)) {
        isTranslucent();
    }

    ~X11ImageSprite() override { dropWindow(); }

    bool isTranslucent() override {
        if (!isVisible()) {
            m_translucent = hasCompositor(m_server) && argbVisual(m_server) != XCB_NONE;
        }
        return m_translucent;
    }

    void showAt(const Screen& screen, PixelPoint topLeft, const SpritePicture& picture) override {
        const Pixels pixels = m_translucent ? Pixels::Translucent : Pixels::Opaque;
        if (!m_window || m_window->pixels() != pixels) {
            makeWindow(pixels);
        }
        const QImage& image = picture.image;
        if (pixels == Pixels::Opaque) {
            m_window->setShape(picture.shape);
        }
        m_window->show(ScreenMapping::deviceRect(
            screen, {topLeft.x, topLeft.y, image.width(), image.height()}));
        if (m_window->depth() == 32 || m_layout.isNativeRgb32()) {
            put(image);
        } else {
            render(image);
        }
        xcb_flush(m_server.connection);
    }

    void hide() override {
        if (isVisible()) {
            m_window->hide();
            m_window->unmapLater();
        }
    }

    bool isVisible() const override { return m_window && m_window->isVisible(); }

private:
    void makeWindow(Pixels pixels) {
        dropWindow();
        m_window = std::make_unique<X11SpriteWindow>(m_server, m_options, pixels, 0U);
        m_gc = xcb_generate_id(m_server.connection);
        xcb_create_gc(m_server.connection, m_gc, m_window->id(), 0, nullptr);
    }

    void dropWindow() {
        if (m_window) {
            xcb_free_gc(m_server.connection, m_gc);
            m_window.reset();
        }
    }

    /// Sends the pixels as they are, in as many requests as the server's limit makes of them.
    void put(const QImage& image) const {
        constexpr std::uint32_t requestHead = 64;
        const auto stride = static_cast<std::uint32_t>(image.bytesPerLine());
        const std::uint32_t longest = xcb_get_maximum_request_length(m_server.connection) * 4;
        const int rowsAtOnce = std::max(1, static_cast<int>((longest - requestHead) / stride));
        for (int row = 0; row < image.height(); row += rowsAtOnce) {
            const int rows = std::min(rowsAtOnce, image.height() - row);
            xcb_put_image(m_server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window->id(), m_gc,
                          static_cast<std::uint16_t>(image.width()),
                          static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(row), 0,
                          m_window->depth(), stride * static_cast<std::uint32_t>(rows),
                          image.constScanLine(row));
        }
    }

    /// Has the server convert the pixels.
    void render(const QImage& image) const {
        const xcb_render_picture_t picture = xcb_generate_id(m_server.connection);
        xcb_render_create_picture(m_server.connection, picture, m_window->id(),
                                  RenderFormats::of(m_server).root, 0, nullptr);
        X11Canvas(m_server, picture, {}, QRegion(image.rect())).draw({0, 0}, image);
        xcb_render_free_picture(m_server.connection, picture);
    }

    Server m_server;
    PixelLayout m_layout;
    SpriteOptions m_options;
    bool m_translucent = false;
    std::unique_ptr<X11SpriteWindow> m_window;
    xcb_gcontext_t m_gc = XCB_NONE;
};

} // namespace

std::unique_ptr<SolidSprite> X11Sprites::createSolid(const QColor& color,
                                                     const SpriteOptions& options) {
    return std::make_unique<X11SolidSprite>(color, options);
}

std::unique_ptr<ImageSprite> X11Sprites::createImage(const SpriteOptions& options) {
    return std::make_unique<X11ImageSprite>(options);
}

} // namespace snapvane::x11
