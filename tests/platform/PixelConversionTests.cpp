#include "platform/x11/PixelConversion.h"

#include <gtest/gtest.h>

namespace snapvane {

using x11::PixelLayout;
using x11::pixelOf;
using x11::rgb32FromPixels;

namespace {

using Masks = std::array<std::uint32_t, 3>;

constexpr Masks masks555 = {0x7c00, 0x03e0, 0x001f};
constexpr Masks masks565 = {0xf800, 0x07e0, 0x001f};
constexpr Masks masks888 = {0xff0000, 0x00ff00, 0x0000ff};
constexpr Masks masks888Reversed = {0x0000ff, 0x00ff00, 0xff0000};
constexpr Masks masks30 = {0x3ff00000, 0x000ffc00, 0x000003ff};
constexpr Masks masks30Reversed = {0x000003ff, 0x000ffc00, 0x3ff00000};
constexpr Masks masks332 = {0xe0, 0x1c, 0x03};

PixelLayout layoutOf(int bitsPerPixel, const Masks& masks, bool mostSignificantFirst = false,
                     int pad = 32) {
    PixelLayout layout;
    layout.bitsPerPixel = bitsPerPixel;
    layout.scanlinePad = pad;
    layout.mostSignificantByteFirst = mostSignificantFirst;
    layout.redMask = masks[0];
    layout.greenMask = masks[1];
    layout.blueMask = masks[2];
    return layout;
}

/// The pixels as the server would store them, with rubbish between the rows' ends and the
/// padding's.
std::vector<std::uint8_t> stored(const std::vector<std::vector<std::uint32_t>>& rows,
                                 const PixelLayout& layout) {
    std::vector<std::uint8_t> bytes;
    const int count = layout.bitsPerPixel / 8;
    for (const auto& row : rows) {
        const std::size_t start = bytes.size();
        for (const std::uint32_t pixel : row) {
            for (int i = 0; i < count; ++i) {
                const int shift = 8 * (layout.mostSignificantByteFirst ? count - 1 - i : i);
                bytes.push_back(static_cast<std::uint8_t>(pixel >> shift));
            }
        }
        const auto length = layout.bytesPerLine(static_cast<int>(row.size()));
        bytes.resize(start + static_cast<std::size_t>(length), 0xa5);
    }
    return bytes;
}

QRgb converted(std::uint32_t pixel, const PixelLayout& layout) {
    const auto bytes = stored({{pixel}}, layout);
    const QImage image = rgb32FromPixels(bytes.data(), 1, 1, layout);
    return image.isNull() ? 0 : image.pixel(0, 0);
}

} // namespace

TEST(PixelConversion, WidensEveryChannelTo8Bits) {
    struct Case {
        const char* name;
        int bitsPerPixel;
        Masks masks;
        std::uint32_t pixel;
        QRgb color;
    };
    const Case cases[] = {
        {"565 white", 16, masks565, 0xffff, qRgb(255, 255, 255)},
        {"565 black", 16, masks565, 0x0000, qRgb(0, 0, 0)},
        {"565 red", 16, masks565, 0xf800, qRgb(255, 0, 0)},
        {"565 middle", 16, masks565, 16 << 11 | 32 << 5 | 8, qRgb(132, 130, 66)},
        {"555 white", 16, masks555, 0x7fff, qRgb(255, 255, 255)},
        {"555 with a stray bit", 16, masks555, 0x8000 | 16 << 10, qRgb(132, 0, 0)},
        {"332", 8, masks332, 0xe0 | 0x08 | 0x01, qRgb(255, 73, 85)},
        {"888 in 24 bits", 24, masks888, 0x123456, qRgb(0x12, 0x34, 0x56)},
        {"888 in 32 bits", 32, masks888, 0x7f123456, qRgb(0x12, 0x34, 0x56)},
        {"888 reversed", 32, masks888Reversed, 0x7f123456, qRgb(0x56, 0x34, 0x12)},
        {"30 bits white", 32, masks30, 0xffffffff, qRgb(255, 255, 255)},
        {"30 bits", 32, masks30, 512U << 20 | 1U << 10 | 3U, qRgb(128, 0, 1)},
        {"30 bits green", 32, masks30, 1023U << 10, qRgb(0, 255, 0)},
    };
    for (const Case& c : cases) {
        for (const bool mostSignificantFirst : {false, true}) {
            SCOPED_TRACE(::testing::Message() << c.name << ", " << mostSignificantFirst);
            EXPECT_EQ(converted(c.pixel, layoutOf(c.bitsPerPixel, c.masks, mostSignificantFirst)),
                      c.color);
        }
    }
}

TEST(PixelConversion, SkipsThePaddingOfEveryRow) {
    const std::vector<std::vector<std::uint32_t>> rows = {{0x010203, 0x040506, 0x070809},
                                                          {0x111213, 0x141516, 0x171819}};
    for (const int pad : {8, 16, 32, 64}) {
        for (const int bits : {24, 32}) {
            SCOPED_TRACE(::testing::Message() << bits << " bits, pad " << pad);
            const PixelLayout layout = layoutOf(bits, masks888, false, pad);
            const auto bytes = stored(rows, layout);
            const QImage image = rgb32FromPixels(bytes.data(), 3, 2, layout);
            ASSERT_EQ(image.size(), QSize(3, 2));
            for (int y = 0; y < 2; ++y) {
                for (int x = 0; x < 3; ++x) {
                    const auto& row = rows[static_cast<std::size_t>(y)];
                    EXPECT_EQ(image.pixel(x, y), 0xff000000U | row[static_cast<std::size_t>(x)]);
                }
            }
        }
    }
}

TEST(PixelConversion, CountsTheBytesOfARow) {
    EXPECT_EQ(layoutOf(16, masks565, false, 32).bytesPerLine(3), 8);
    EXPECT_EQ(layoutOf(16, masks565, false, 16).bytesPerLine(3), 6);
    EXPECT_EQ(layoutOf(24, masks888, false, 32).bytesPerLine(3), 12);
    EXPECT_EQ(layoutOf(24, masks888, false, 8).bytesPerLine(3), 9);
    EXPECT_EQ(layoutOf(32, masks888, false, 32).bytesPerLine(3), 12);
    EXPECT_EQ(layoutOf(32, masks888, false, 0).bytesPerLine(3), 12);
}

TEST(PixelConversion, RefusesOtherLayouts) {
    const std::uint8_t bytes[16] = {};
    for (const int bits : {0, 1, 4, 12, 40, 64}) {
        SCOPED_TRACE(bits);
        EXPECT_TRUE(rgb32FromPixels(bytes, 1, 1, layoutOf(bits, masks888)).isNull());
    }
    const Masks withoutOne[] = {{0, 0xff00, 0xff}, {0xff0000, 0, 0xff}, {0xff0000, 0xff00, 0}};
    for (const Masks& masks : withoutOne) {
        EXPECT_TRUE(rgb32FromPixels(bytes, 1, 1, layoutOf(32, masks)).isNull());
    }
}

TEST(PixelConversion, KnowsTheLayoutThatNeedsNone) {
    EXPECT_TRUE(layoutOf(32, masks888).isNativeRgb32());
    EXPECT_FALSE(layoutOf(32, masks888, true).isNativeRgb32());
    EXPECT_FALSE(layoutOf(24, masks888).isNativeRgb32());
    EXPECT_FALSE(layoutOf(32, masks30).isNativeRgb32());
    EXPECT_FALSE(layoutOf(32, masks888Reversed).isNativeRgb32());
    EXPECT_FALSE(layoutOf(16, masks565).isNativeRgb32());
}

TEST(PixelConversion, FindsThePixelOfAColor) {
    struct Case {
        const char* name = nullptr;
        Masks masks = {};
        QColor color;
        std::uint32_t pixel = 0;
    };
    const Case cases[] = {
        {"888", masks888, QColor(0x12, 0x34, 0x56), 0x123456},
        {"888 without the alpha", masks888, QColor(0x12, 0x34, 0x56, 7), 0x123456},
        {"888 reversed", masks888Reversed, QColor(0x12, 0x34, 0x56), 0x563412},
        {"565 white", masks565, QColor(255, 255, 255), 0xffff},
        {"565 black", masks565, QColor(0, 0, 0), 0},
        {"565 red", masks565, QColor(255, 0, 0), 0xf800},
        {"565 to the nearest", masks565, QColor(132, 130, 66), 16 << 11 | 32 << 5 | 8},
        {"565 rounds both ways", masks565, QColor(4, 4, 5), 0 << 11 | 1 << 5 | 1},
        {"555", masks555, QColor(255, 132, 0), 31 << 10 | 16 << 5},
        {"332", masks332, QColor(255, 73, 85), 0xe0 | 0x08 | 0x01},
        {"30 bits white", masks30, QColor(255, 255, 255), 0x3fffffff},
        {"30 bits", masks30, QColor(128, 0, 1), 514U << 20 | 4U},
        {"30 bits reversed", masks30Reversed, QColor(128, 0, 1), 4U << 20 | 514U},
        {"no green", {0xff0000, 0, 0x0000ff}, QColor(1, 2, 3), 0x010003},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(pixelOf(c.color, layoutOf(32, c.masks)), c.pixel);
    }
}

TEST(PixelConversion, APixelsColorIsTheOneItWasMadeFor) {
    for (const Masks& masks : {masks888, masks888Reversed, masks30, masks30Reversed}) {
        const PixelLayout layout = layoutOf(32, masks);
        for (int value = 0; value < 256; ++value) {
            const QColor color(value, 255 - value, (value * 7) % 256);
            EXPECT_EQ(converted(pixelOf(color, layout), layout), color.rgb()) << value;
        }
    }
}

TEST(PixelConversion, ACoarsePixelIsTheNearestThereIs) {
    for (const Masks& masks : {masks565, masks555}) {
        const PixelLayout layout = layoutOf(16, masks);
        for (int value = 0; value < 256; ++value) {
            const QRgb shown = converted(pixelOf(QColor(value, value, value), layout), layout);
            // Half of a step of 5 or 6 bits, and what rounding to 8 bits adds.
            EXPECT_NEAR(qRed(shown), value, 4.6) << value;
            EXPECT_NEAR(qGreen(shown), value, masks == masks565 ? 2.6 : 4.6) << value;
            EXPECT_NEAR(qBlue(shown), value, 4.6) << value;
        }
    }
}

} // namespace snapvane
