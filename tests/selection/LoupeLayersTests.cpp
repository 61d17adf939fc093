#include "selection/LoupeLayers.h"

#include "selection/LoupePixels.h"
#include "selection/SelectionMagnifierView.h"

#include <gmock/gmock.h>

#include <cmath>

namespace snapvane {

namespace {

using LoupePixels::reach;
using LoupePixels::side;
using ::testing::Values;

constexpr GlobalSize viewSize = SelectionMagnifierView::size;
// 90 % and 95 % of 255, as 8 bits have them.
constexpr int ringAlpha = 230;
constexpr int markAlpha = 242;

/// The layers of one scale. The frame is green and the cross is blue, so that they can be told
/// apart.
struct Drawn {
    explicit Drawn(double scale, bool isTranslucent = true)
        : geometry(viewSize, scale), layers(geometry, {scale, isTranslucent, Qt::green, Qt::blue}) {
    }

    /// From the middle of the circle to the middle of a pixel of a picture as large as the view; in
    /// points.
    double distance(int x, int y) const {
        return std::hypot(x + 0.5 - geometry.circle.x - geometry.circle.width / 2.0,
                          y + 0.5 - geometry.circle.y - geometry.circle.height / 2.0) /
               geometry.scale;
    }

    LoupeGeometry geometry;
    LoupeLayers layers;
};

class LoupeGeometryTest : public ::testing::TestWithParam<double> {
protected:
    const LoupeGeometry geometry{viewSize, GetParam()};
};

TEST_P(LoupeGeometryTest, CellsTileTheSquareWithoutGaps) {
    EXPECT_EQ(geometry.edge(0), 0);
    EXPECT_EQ(geometry.edge(side), geometry.circle.width);
    EXPECT_EQ(geometry.edge(side), geometry.circle.height);
    QImage covered(geometry.circle.width, geometry.circle.height, QImage::Format_Grayscale8);
    covered.fill(0);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const PixelRect cell = geometry.cell(column, row);
            ASSERT_TRUE(covered.rect().contains(cell.toQRect()));
            for (int y = cell.y; y < cell.y + cell.height; ++y) {
                for (int x = cell.x; x < cell.x + cell.width; ++x) {
                    ++covered.scanLine(y)[x];
                }
            }
        }
    }
    for (int y = 0; y < covered.height(); ++y) {
        for (int x = 0; x < covered.width(); ++x) {
            ASSERT_EQ(covered.scanLine(y)[x], 1) << x << ',' << y;
        }
    }
}

TEST_P(LoupeGeometryTest, CellsDifferByAPixelAtMost) {
    const double scale = GetParam();
    for (int i = 0; i < side; ++i) {
        const PixelRect cell = geometry.cell(i, side - 1 - i);
        EXPECT_LE(std::abs(cell.width - 8 * scale), 1.0);
        EXPECT_LE(std::abs(cell.height - 8 * scale), 1.0);
    }
}

TEST_P(LoupeGeometryTest, TheSquareLiesInTheView) {
    const double scale = GetParam();
    const QRect view(0, 0, geometry.view.width, geometry.view.height);
    EXPECT_TRUE(view.contains(geometry.circle.toQRect()));
    EXPECT_NEAR(geometry.circle.x, 20 * scale, 0.5);
    EXPECT_NEAR(geometry.circle.y, 8 * scale, 0.5);
    // In the middle from left to right, as well as pixels allow.
    const int right = geometry.view.width - geometry.circle.x - geometry.circle.width;
    EXPECT_LE(std::abs(right - geometry.circle.x), 1);
}

INSTANTIATE_TEST_SUITE_P(Scales, LoupeGeometryTest,
                         Values(1.0, 1.1, 1.25, 1.33, 1.5, 1.75, 2.0, 2.25, 2.5, 3.0));

TEST(LoupeGeometryOnce, IsTheStatedOneAt1) {
    const LoupeGeometry geometry(viewSize, 1);
    EXPECT_EQ(geometry.view, (PixelSize{160, 164}));
    EXPECT_EQ(geometry.circle, (PixelRect{20, 8, 120, 120}));
    EXPECT_EQ(geometry.cell(0, 0), (PixelRect{0, 0, 8, 8}));
    EXPECT_EQ(geometry.cell(reach, reach), (PixelRect{56, 56, 8, 8}));
    EXPECT_EQ(geometry.cell(14, 3), (PixelRect{112, 24, 8, 8}));
}

class LoupeLayersTest : public ::testing::TestWithParam<double> {
protected:
    const double scale = GetParam();
    const Drawn drawn{scale};
    const LoupeGeometry& geometry = drawn.geometry;
    const LoupeLayers& layers = drawn.layers;
};

TEST_P(LoupeLayersTest, HaveTheirSizes) {
    const QSize circle(geometry.circle.width, geometry.circle.height);
    const QSize view(geometry.view.width, geometry.view.height);
    for (const QImage* image : {&layers.grid, &layers.marks, &layers.mask}) {
        EXPECT_EQ(image->size(), circle);
        EXPECT_EQ(image->format(), QImage::Format_ARGB32_Premultiplied);
    }
    for (const QImage* image : {&layers.ring, &layers.shadow}) {
        EXPECT_EQ(image->size(), view);
        EXPECT_EQ(image->format(), QImage::Format_ARGB32_Premultiplied);
    }
}

TEST_P(LoupeLayersTest, TheGridIsFaintBlackLinesBetweenTheCells) {
    // A line reaches a quarter of a point into each of the cells that it parts.
    const int reachIn = static_cast<int>(std::ceil(0.25 * scale));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const QRect cell = geometry.cell(column, row).toQRect();
            const QRect inside = cell.adjusted(reachIn, reachIn, -reachIn, -reachIn);
            for (int y = cell.top(); y <= cell.bottom(); ++y) {
                for (int x = cell.left(); x <= cell.right(); ++x) {
                    const QRgb pixel = layers.grid.pixel(x, y);
                    ASSERT_EQ(pixel & RGB_MASK, 0U);
                    if (inside.contains(x, y)) {
                        ASSERT_EQ(qAlpha(pixel), 0) << x << ',' << y;
                    }
                    // The outlines of four cells meet in a corner, each of a quarter.
                    ASSERT_LE(qAlpha(pixel), 175) << x << ',' << y;
                }
            }
            // All around the cell there is a line.
            const QPoint middle = cell.center();
            for (const QPoint border :
                 {QPoint(cell.left(), middle.y()), QPoint(cell.right(), middle.y()),
                  QPoint(middle.x(), cell.top()), QPoint(middle.x(), cell.bottom())}) {
                EXPECT_GT(qAlpha(layers.grid.pixel(border)), 0);
                // Of the cell and of its neighbour.
                EXPECT_LE(qAlpha(layers.grid.pixel(border)), 112);
            }
        }
    }
}

TEST_P(LoupeLayersTest, TheMarksAreAFrameAndACross) {
    const QImage& marks = layers.marks;
    const QRect middle = geometry.cell(reach, reach).toQRect();
    // The frame is the middle cell's outline; the cross does not reach its corners.
    EXPECT_EQ(marks.pixelColor(middle.topLeft()).green(), 255);
    EXPECT_EQ(qAlpha(marks.pixel(middle.topLeft())), markAlpha);
    EXPECT_EQ(qAlpha(marks.pixel(middle.bottomRight())), markAlpha);
    EXPECT_EQ(qAlpha(marks.pixel(middle.topLeft() - QPoint(1, 1))), markAlpha);
    // Beside the cross, inside and outside the frame.
    const int in = static_cast<int>(std::ceil(scale));
    EXPECT_EQ(marks.pixel(middle.topLeft() + QPoint(in, in)), 0U);
    EXPECT_EQ(marks.pixel(middle.topLeft() - QPoint(in + 1, in + 1)), 0U);
}

TEST_P(LoupeLayersTest, TheCrossReachesTenPointsEachWay) {
    const QImage& marks = layers.marks;
    const QRect cell = geometry.cell(reach, reach).toQRect();
    const double middle = cell.left() + cell.width() / 2.0;
    const int row = static_cast<int>(std::floor(middle));
    for (const bool across : {true, false}) {
        SCOPED_TRACE(across);
        const auto at = [&](double place) {
            const int pixel = static_cast<int>(std::floor(place));
            return across ? marks.pixelColor(pixel, row) : marks.pixelColor(row, pixel);
        };
        for (const double sign : {-1.0, 1.0}) {
            EXPECT_EQ(at(middle + sign * 7 * scale).blue(), 255);
            EXPECT_GT(at(middle + sign * (10 * scale - 1)).alpha(), 50);
            EXPECT_EQ(at(middle + sign * (10 * scale + 1.01)).alpha(), 0);
        }
    }
}

TEST_P(LoupeLayersTest, TheCrossIsOverTheFrame) {
    const QRect cell = geometry.cell(reach, reach).toQRect();
    const QPoint crossing(cell.left(), static_cast<int>(cell.top() + cell.height() / 2.0));
    // Half covered at the least, where the line is between two rows.
    EXPECT_GT(layers.marks.pixelColor(crossing).blue(), 100);
}

TEST_P(LoupeLayersTest, TheMaskIsTheCircle) {
    for (int y = 0; y < layers.mask.height(); ++y) {
        for (int x = 0; x < layers.mask.width(); ++x) {
            const double distance = drawn.distance(x + geometry.circle.x, y + geometry.circle.y);
            const int alpha = qAlpha(layers.mask.pixel(x, y));
            if (distance < 60 - 1 / scale) {
                ASSERT_EQ(alpha, 255) << x << ',' << y;
            } else if (distance > 60 + 1 / scale) {
                ASSERT_EQ(alpha, 0) << x << ',' << y;
            }
        }
    }
}

TEST_P(LoupeLayersTest, TheRingIsWhiteAndTwoPointsWide) {
    int full = 0;
    for (int y = 0; y < layers.ring.height(); ++y) {
        for (int x = 0; x < layers.ring.width(); ++x) {
            const QRgb pixel = layers.ring.pixel(x, y);
            const double distance = drawn.distance(x, y);
            ASSERT_EQ(qRed(pixel), qAlpha(pixel)) << "premultiplied white";
            ASSERT_EQ(qGreen(pixel), qAlpha(pixel));
            ASSERT_EQ(qBlue(pixel), qAlpha(pixel));
            ASSERT_LE(qAlpha(pixel), ringAlpha);
            if (distance < 58.5 - 1 / scale || distance > 60.5 + 1 / scale) {
                ASSERT_EQ(qAlpha(pixel), 0) << x << ',' << y;
            } else if (distance > 58.5 + 1 / scale && distance < 60.5 - 1 / scale) {
                ASSERT_GE(qAlpha(pixel), ringAlpha - 2) << x << ',' << y;
            }
            full += qAlpha(pixel) >= ringAlpha - 2 ? 1 : 0;
        }
    }
    EXPECT_GT(full, 300 * scale);
}

TEST_P(LoupeLayersTest, TheShadowFallsAroundTheCircleAndEndsInsideTheView) {
    const QImage& shadow = layers.shadow;
    const int right = shadow.width() - 1;
    const int bottom = shadow.height() - 1;
    for (int y = 0; y <= bottom; ++y) {
        for (int x = 0; x <= right; ++x) {
            const QRgb pixel = shadow.pixel(x, y);
            ASSERT_EQ(pixel & RGB_MASK, 0U);
            ASSERT_LE(qAlpha(pixel), 102);
            const double distance = drawn.distance(x, y);
            if (distance < 60 - 1 / scale || distance > 70 + 1 / scale) {
                ASSERT_EQ(qAlpha(pixel), 0) << x << ',' << y;
            }
            const bool border = x == 0 || y == 0 || x == right || y == bottom;
            if (border) {
                ASSERT_LE(qAlpha(pixel), 1) << "cut off at " << x << ',' << y;
            }
        }
    }
    // More below the circle than above it.
    const int middle = geometry.circle.x + geometry.circle.width / 2;
    const int off = static_cast<int>(std::ceil(2 * scale));
    const int below =
        qAlpha(shadow.pixel(middle, geometry.circle.y + geometry.circle.height + off));
    const int above = qAlpha(shadow.pixel(middle, geometry.circle.y - off));
    EXPECT_GT(below, above);
    EXPECT_GT(above, 0);
}

/// In place of the shadow there is the ground that the circle's dark rim is cut from.
TEST_P(LoupeLayersTest, WithoutTransparencyOnlyTheShadowDiffers) {
    const Drawn opaque(scale, false);
    EXPECT_EQ(opaque.layers.grid, layers.grid);
    EXPECT_EQ(opaque.layers.marks, layers.marks);
    EXPECT_EQ(opaque.layers.mask, layers.mask);
    EXPECT_EQ(opaque.layers.ring, layers.ring);
    QImage black(layers.shadow.size(), QImage::Format_ARGB32_Premultiplied);
    black.fill(Qt::black);
    EXPECT_EQ(opaque.layers.shadow, black);
}

INSTANTIATE_TEST_SUITE_P(Scales, LoupeLayersTest, Values(1.0, 1.1, 1.33, 1.5, 2.0, 3.0));

TEST(LoupeLayersOnce, AGridLineIsAQuarterOfAQuarterAt1) {
    const Drawn drawn(1);
    // A quarter of the pixel beside the edge, at 25 %; the last column's right side has one line
    // only, an inner cell's right side the neighbour's as well.
    EXPECT_EQ(qAlpha(drawn.layers.grid.pixel(119, 60)), 16);
    EXPECT_EQ(qAlpha(drawn.layers.grid.pixel(56, 60)), 16);
    EXPECT_EQ(qAlpha(drawn.layers.grid.pixel(63, 60)), 31);
    EXPECT_EQ(drawn.layers.grid.pixel(60, 60), 0U);
}

TEST(LoupeLayersOnce, TheMarksAreCrispAt2) {
    const Drawn drawn(2);
    const QImage& marks = drawn.layers.marks;
    const QRgb blue = qPremultiply(qRgba(0, 0, 255, markAlpha));
    for (const int row : {119, 120}) {
        EXPECT_EQ(marks.pixel(100, row), blue);
        EXPECT_EQ(marks.pixel(139, row), blue);
        EXPECT_EQ(marks.pixel(99, row), 0U);
        EXPECT_EQ(marks.pixel(140, row), 0U);
    }
    EXPECT_EQ(marks.pixel(105, 118), 0U);
    EXPECT_EQ(marks.pixel(105, 121), 0U);
    // A frame of two points around the cell from 112 to 127.
    const QRgb green = qPremultiply(qRgba(0, 255, 0, markAlpha));
    for (const int x : {110, 111, 112, 113, 126, 127, 128, 129}) {
        EXPECT_EQ(marks.pixel(x, 114), green) << x;
    }
    for (const int x : {109, 114, 125, 130}) {
        EXPECT_EQ(marks.pixel(x, 116), 0U) << x;
    }
}

} // namespace

} // namespace snapvane
