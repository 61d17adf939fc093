#pragma once

#include "X11TestDesktop.h"
#include "platform/x11/PixelConversion.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/X11Sprites.h"
#include "platform/x11/Xcb.h"
#include "support/PictureCompare.h"
#include "support/QtPrinting.h"
#include "support/TestPattern.h"
#include "support/Wait.h"
#include "support/X11Probe.h"

#include <gtest/gtest.h>

namespace snapvane {

inline constexpr QRgb spriteColor = 0xff123456;

/// Sprites on the test's desktop, and a look at them from outside. They need no events of Qt's to
/// be on the glass.
class SpriteTest : public ::testing::Test {
public:
    /// The glass as it is at this moment, RGB32, on a display of any depth. Everything asked of
    /// the server before is done by then.
    static QImage glass(const QRect& rect) {
        const x11::Server server = x11::qtServer();
        const auto cookie =
            xcb_get_image(server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, server.root(),
                          static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                          static_cast<std::uint16_t>(rect.width()),
                          static_cast<std::uint16_t>(rect.height()), ~0U);
        const auto reply = x11::owned(xcb_get_image_reply(server.connection, cookie, nullptr));
        if (!reply) {
            return {};
        }
        const x11::PixelLayout layout = x11::rootPixelLayout(server);
        const std::uint8_t* pixels = xcb_get_image_data(reply.get());
        if (!layout.isNativeRgb32()) {
            return x11::rgb32FromPixels(pixels, rect.width(), rect.height(), layout);
        }
        // Without the work of a conversion; the unused byte does not count.
        QImage picture(rect.size(), QImage::Format_RGB32);
        std::memcpy(picture.bits(), pixels, static_cast<std::size_t>(picture.sizeInBytes()));
        return picture;
    }

protected:
    std::unique_ptr<SolidSprite> solid(const char* name, int level = 1001) {
        return m_sprites.createSolid(QColor(spriteColor), {QString::fromLatin1(name), level});
    }
    std::unique_ptr<ImageSprite> image(const char* name, int level = 1002) {
        return m_sprites.createImage({QString::fromLatin1(name), level});
    }
    Screen screen(std::size_t index = 0) { return m_screens.list().at(index); }

    static SpritePicture whole(const QImage& picture) {
        return {picture, {{PixelRect::fromQRect(picture.rect()), 0}}};
    }
    /// A picture in which every pixel is different and opaque.
    static SpritePicture patternPicture(const QSize& size, std::uint32_t seed = 5) {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < size.height(); ++y) {
            auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
            for (int x = 0; x < size.width(); ++x) {
                row[x] = 0xff000000U | testing::patternPixel(x, y, seed);
            }
        }
        return whole(picture);
    }
    static SpritePicture plainPicture(const QSize& size, QRgb premultiplied) {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(premultiplied);
        return whole(picture);
    }

    /// The window of that name if it is on the screen.
    static std::optional<testing::WindowInfo> windowOf(const char* name) {
        // Requests of one connection are not in order with those of another.
        x11::roundTrip(x11::qtServer());
        for (const testing::WindowInfo& window : testing::X11Probe(testDesktop().connection())
                                                     .windowsNamed(QString::fromLatin1(name))) {
            // Some wait off the desktop, mapped, to be shown or to go.
            if (window.viewable && window.rect.intersects(everything())) {
                return window;
            }
        }
        return std::nullopt;
    }

    static QRect everything() { return testDesktop().rect(); }

    /// The desktop's own picture with another one laid over it.
    QImage desktopWith(const QPoint& topLeft, const QImage& picture) const {
        QImage expected = m_bare.copy();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (const QPoint place = topLeft + QPoint(x, y); expected.rect().contains(place)) {
                    expected.setPixel(place, picture.pixel(x, y) | 0xff000000U);
                }
            }
        }
        return expected;
    }
    QImage desktopWith(const QRect& area, QRgb color = spriteColor) const {
        QImage picture(area.size(), QImage::Format_RGB32);
        picture.fill(color);
        return desktopWith(area.topLeft(), picture);
    }

    /// What the whole desktop looks like without any sprite.
    const QImage& bare() const { return m_bare; }
    /// Whether the glass shows that before the time has passed.
    static ::testing::AssertionResult isBecoming(const QImage& expected,
                                                 std::chrono::milliseconds limit) {
        QImage last;
        const bool became = testing::waitUntil(
            [&] {
                QCoreApplication::processEvents();
                last = glass(everything());
                return last == expected;
            },
            limit);
        return became ? ::testing::AssertionSuccess()
                      : testing::samePicture(expected, last, QStringLiteral("sprites"));
    }

    x11::X11Screens m_screens;
    x11::X11Sprites m_sprites;

private:
    QImage m_bare = glass(everything());
};

} // namespace snapvane
