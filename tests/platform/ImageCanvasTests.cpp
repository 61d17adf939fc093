#include "platform/null/ImageCanvas.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

const QRect whole(0, 0, 20, 10);

QImage surface() {
    QImage image(whole.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(9, 9, 9, 9));
    return image;
}

QRgb at(const QImage& image, int x, int y) {
    return image.convertToFormat(QImage::Format_ARGB32).pixel(x, y);
}

} // namespace

TEST(ImageCanvas, VeilsAndClearsWhateverIsThere) {
    QImage image = surface();
    {
        null::ImageCanvas canvas(image, 0.4, whole);
        canvas.veil({0, 0, 20, 10});
        canvas.clear({5, 5, 2, 2});
    }
    EXPECT_EQ(at(image, 0, 0), qRgba(0, 0, 0, 102));
    EXPECT_EQ(at(image, 5, 5), 0U);
    EXPECT_EQ(at(image, 6, 6), 0U);
    EXPECT_EQ(at(image, 7, 6), qRgba(0, 0, 0, 102));
    EXPECT_EQ(at(image, 4, 5), qRgba(0, 0, 0, 102));
}

TEST(ImageCanvas, BlendsColorsAndPictures) {
    QImage image = surface();
    QImage picture(2, 2, QImage::Format_ARGB32_Premultiplied);
    picture.fill(qRgba(0, 0, 0, 0));
    picture.setPixelColor(1, 0, QColor(10, 20, 30));
    picture.setDevicePixelRatio(2);
    {
        null::ImageCanvas canvas(image, 0.4, whole);
        canvas.clear({0, 0, 20, 10});
        canvas.fill({0, 0, 4, 4}, QColor(200, 100, 50));
        canvas.fill({1, 1, 1, 1}, QColor(0, 0, 0, 0));
        canvas.draw({2, 2}, picture);
    }
    EXPECT_EQ(at(image, 1, 1), qRgb(200, 100, 50));
    EXPECT_EQ(at(image, 2, 2), qRgb(200, 100, 50));
    EXPECT_EQ(at(image, 3, 2), qRgb(10, 20, 30));
    EXPECT_EQ(at(image, 4, 4), 0U);
}

TEST(ImageCanvas, DrawsInsideItsRegionOnly) {
    QImage image = surface();
    const QRgb before = at(image, 0, 0);
    {
        null::ImageCanvas canvas(image, 0.4, QRegion(2, 2, 3, 3) + QRegion(10, 2, 3, 3));
        canvas.veil({0, 0, 20, 10});
        canvas.fill({0, 0, 20, 10}, Qt::red);
    }
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x) {
            const bool inside = y >= 2 && y < 5 && ((x >= 2 && x < 5) || (x >= 10 && x < 13));
            EXPECT_EQ(at(image, x, y), inside ? qRgb(255, 0, 0) : before) << x << "," << y;
        }
    }
}

} // namespace snapvane
