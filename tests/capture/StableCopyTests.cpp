#include "capture/StableCopy.h"

#include <gtest/gtest.h>

#include <cstring>

namespace snapvane {

namespace {

constexpr int width = 5;
constexpr int height = 3;

QRgb colorAt(int x, int y) {
    return qRgb(10 + x, 100 + y, 200 + x + y);
}

void expectColors(const QImage& copy) {
    for (int y = 0; y < height; ++y) {
        const uchar* row = copy.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            SCOPED_TRACE(::testing::Message() << x << "," << y);
            const QRgb color = colorAt(x, y);
            EXPECT_EQ(row[4 * x], qRed(color));
            EXPECT_EQ(row[4 * x + 1], qGreen(color));
            EXPECT_EQ(row[4 * x + 2], qBlue(color));
            EXPECT_EQ(row[4 * x + 3], 255);
        }
    }
}

/// A picture in memory of somebody else's, with rows longer than they need be and rubbish in the
/// fourth byte, as screens deliver it.
struct ForeignPicture {
    static constexpr int stride = 4 * (width + 2);

    explicit ForeignPicture(QImage::Format pictureFormat) : format(pictureFormat) {
        std::memset(memory, 0x5a, sizeof memory);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                uchar* pixel = memory + y * stride + 4 * x;
                const QRgb color = colorAt(x, y);
                const bool redFirst = format == QImage::Format_RGBX8888;
                pixel[redFirst ? 0 : 2] = static_cast<uchar>(qRed(color));
                pixel[1] = static_cast<uchar>(qGreen(color));
                pixel[redFirst ? 2 : 0] = static_cast<uchar>(qBlue(color));
                // Of these formats only the screen's own may hold anything there.
                pixel[3] = redFirst ? 255 : static_cast<uchar>(17 * x);
            }
        }
    }

    QImage image() { return {memory, width, height, stride, format}; }

    QImage::Format format;
    uchar memory[stride * height] = {};
};

} // namespace

TEST(StableCopy, HoldsRedGreenBlueAndOpaqueInMemoryOrder) {
    for (const auto format : {QImage::Format_RGB32, QImage::Format_RGBX8888}) {
        SCOPED_TRACE(format);
        ForeignPicture source(format);
        const QImage copy = makeStableCopy(source.image());
        ASSERT_EQ(copy.size(), QSize(width, height));
        EXPECT_EQ(copy.bytesPerLine(), 4 * width);
        EXPECT_EQ(copy.format(), QImage::Format_RGBX8888);
        expectColors(copy);
    }
}

TEST(StableCopy, DoesNotChangeWithTheMemoryItCameFrom) {
    for (const auto format : {QImage::Format_RGB32, QImage::Format_RGBX8888}) {
        SCOPED_TRACE(format);
        ForeignPicture source(format);
        const QImage copy = makeStableCopy(source.image());
        std::memset(source.memory, 0, sizeof source.memory);
        expectColors(copy);
    }
}

TEST(StableCopy, CountsPixelsWhateverTheDensityOfTheSource) {
    ForeignPicture source(QImage::Format_RGB32);
    QImage image = source.image().copy();
    image.setDevicePixelRatio(2);
    const QImage copy = makeStableCopy(image);
    EXPECT_EQ(copy.size(), QSize(width, height));
    EXPECT_EQ(copy.devicePixelRatio(), 1);
    expectColors(copy);
}

TEST(StableCopy, CopiesASinglePixel) {
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(QColor(1, 2, 3));
    const QImage copy = makeStableCopy(image);
    ASSERT_EQ(copy.size(), QSize(1, 1));
    EXPECT_EQ(copy.pixelColor(0, 0), QColor(1, 2, 3));
}

TEST(StableCopy, IsNullWithoutPixels) {
    EXPECT_TRUE(makeStableCopy({}).isNull());
    EXPECT_TRUE(makeStableCopy(QImage(0, 5, QImage::Format_RGB32)).isNull());
    EXPECT_TRUE(makeStableCopy(QImage(5, 0, QImage::Format_RGB32)).isNull());
}

} // namespace snapvane
