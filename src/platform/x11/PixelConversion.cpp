#include "platform/x11/PixelConversion.h"

#include <bit>

namespace snapvane::x11 {

namespace {

const xcb_format_t* formatForDepth(const xcb_setup_t* setup, int depth) {
    const xcb_format_t* formats = xcb_setup_pixmap_formats(setup);
    for (int i = 0; i < xcb_setup_pixmap_formats_length(setup); ++i) {
        if (formats[i].depth == depth) {
            return &formats[i];
        }
    }
    return nullptr;
}

const xcb_visualtype_t* visualWithId(const xcb_screen_t* screen, xcb_visualid_t id) {
    auto depths = xcb_screen_allowed_depths_iterator(screen);
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
        auto visuals = xcb_depth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == id) {
                return visuals.data;
            }
        }
    }
    return nullptr;
}

std::uint32_t readPixel(const std::uint8_t* bytes, int count, bool mostSignificantFirst) {
    std::uint32_t pixel = 0;
    for (int i = 0; i < count; ++i) {
        const int shift = 8 * (mostSignificantFirst ? count - 1 - i : i);
        pixel |= static_cast<std::uint32_t>(bytes[i]) << shift;
    }
    return pixel;
}

std::uint32_t channel(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) {
        return 0;
    }
    const int shift = std::countr_zero(mask);
    const std::uint64_t largest = mask >> shift;
    const std::uint64_t value = (pixel & mask) >> shift;
    return static_cast<std::uint32_t>((value * 255 + largest / 2) / largest);
}

/// The bits of one channel of 8 bits under the mask; rounded to the nearest.
std::uint32_t channelBits(int value, std::uint32_t mask) {
    if (mask == 0) {
        return 0;
    }
    const int shift = std::countr_zero(mask);
    const std::uint64_t largest = mask >> shift;
    const std::uint64_t scaled = (static_cast<std::uint64_t>(value) * largest + 127) / 255;
    return static_cast<std::uint32_t>(scaled << shift);
}

} // namespace

int PixelLayout::bytesPerLine(int width) const {
    const int pad = scanlinePad > 0 ? scanlinePad : 8;
    return (width * bitsPerPixel + pad - 1) / pad * (pad / 8);
}

bool PixelLayout::isNativeRgb32() const {
    constexpr bool bigEndian = std::endian::native == std::endian::big;
    return bitsPerPixel == 32 && mostSignificantByteFirst == bigEndian && redMask == 0xff0000 &&
           greenMask == 0x00ff00 && blueMask == 0x0000ff;
}

std::uint32_t pixelOf(const QColor& color, const PixelLayout& layout) {
    return channelBits(color.red(), layout.redMask) | channelBits(color.green(), layout.greenMask) |
           channelBits(color.blue(), layout.blueMask);
}

PixelLayout rootPixelLayout(const Server& server) {
    PixelLayout layout;
    const xcb_setup_t* setup = xcb_get_setup(server.connection);
    layout.depth = server.screen->root_depth;
    layout.mostSignificantByteFirst = setup->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
    if (const auto* format = formatForDepth(setup, layout.depth)) {
        layout.bitsPerPixel = format->bits_per_pixel;
        layout.scanlinePad = format->scanline_pad;
    }
    if (const auto* visual = visualWithId(server.screen, server.screen->root_visual)) {
        layout.redMask = visual->red_mask;
        layout.greenMask = visual->green_mask;
        layout.blueMask = visual->blue_mask;
    }
    return layout;
}

QImage rgb32FromPixels(const std::uint8_t* data, int width, int height, const PixelLayout& layout) {
    const bool wholeBytes =
        layout.bitsPerPixel % 8 == 0 && layout.bitsPerPixel > 0 && layout.bitsPerPixel <= 32;
    if (!wholeBytes || layout.redMask == 0 || layout.greenMask == 0 || layout.blueMask == 0) {
        return {};
    }
    QImage image(width, height, QImage::Format_RGB32);
    const int bytesPerPixel = layout.bitsPerPixel / 8;
    const int stride = layout.bytesPerLine(width);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* source = data + static_cast<std::ptrdiff_t>(y) * stride;
        auto* target = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x, source += bytesPerPixel) {
            const std::uint32_t pixel =
                readPixel(source, bytesPerPixel, layout.mostSignificantByteFirst);
            target[x] = 0xff000000U | channel(pixel, layout.redMask) << 16 |
                        channel(pixel, layout.greenMask) << 8 | channel(pixel, layout.blueMask);
        }
    }
    return image;
}

} // namespace snapvane::x11
