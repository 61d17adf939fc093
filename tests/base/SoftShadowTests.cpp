#include "base/SoftShadow.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

constexpr int width = 60;
constexpr int height = 40;
constexpr int around = 14;

QImage shadow(double pixelsPerPoint = 1) {
    QColor black(Qt::black);
    black.setAlphaF(0.5F);
    return SoftShadow{black, 10, 4}.of({width, height}, 8, pixelsPerPoint);
}

int alpha(const QImage& image, int x, int y) {
    return qAlpha(image.pixel(x, y));
}

} // namespace

TEST(SoftShadow, ReachesAroundTheShape) {
    EXPECT_EQ((SoftShadow{Qt::black, 10, 4}.margins()), QMargins(around, around, around, around));
    EXPECT_EQ(shadow().size(), QSize(width + 2 * around, height + 2 * around));
}

TEST(SoftShadow, HasTheColoursOpacityInTheMiddle) {
    EXPECT_NEAR(alpha(shadow(), around + width / 2, around + height / 2 + 4), 128, 2);
}

TEST(SoftShadow, FadesOutWithinItsReach) {
    const QImage image = shadow();
    const int y = around + height / 2 + 4;
    for (int x = 1; x < around + width / 2; ++x) {
        EXPECT_GE(alpha(image, x, y), alpha(image, x - 1, y)) << x;
    }
    EXPECT_EQ(alpha(image, around - 11, y), 0);
    EXPECT_GT(alpha(image, around - 2, y), 20);
    EXPECT_EQ(alpha(image, 0, 0), 0);
}

TEST(SoftShadow, LiesBelowTheShape) {
    const QImage image = shadow();
    const int x = around + width / 2;
    EXPECT_GT(alpha(image, x, around + height + 6), alpha(image, x, around - 6));
    EXPECT_EQ(alpha(image, x, around + height + 4 + 2), alpha(image, x, around + 4 - 3));
}

TEST(SoftShadow, IsTheSameAtEveryScale) {
    const QImage image = shadow(2);
    EXPECT_EQ(image.size(), QSize(2 * (width + 2 * around), 2 * (height + 2 * around)));
    EXPECT_EQ(image.devicePixelRatio(), 2);
    const QImage plain = shadow();
    for (int x = 2; x < plain.width() - 2; x += 3) {
        EXPECT_NEAR(alpha(image, 2 * x, 70), alpha(plain, x, 35), 16) << x;
    }
}

TEST(CachedShadow, IsMadeAnewOnlyForOtherValues) {
    const SoftShadow soft = {Qt::black, 10, 4};
    CachedShadow cached;
    const qint64 first = cached.of(soft, {60, 40}, 8, 1.25).cacheKey();
    EXPECT_EQ(cached.of(soft, {60, 40}, 8, 1.25).cacheKey(), first);
    EXPECT_NE(cached.of(soft, {60, 41}, 8, 1.25).cacheKey(), first);
    EXPECT_EQ(cached.of(soft, {60, 40}, 8, 1.25), soft.of({60, 40}, 8, 1.25));
    EXPECT_EQ(cached.of(soft, {60, 40}, 8, 2), soft.of({60, 40}, 8, 2));
}

} // namespace snapvane
