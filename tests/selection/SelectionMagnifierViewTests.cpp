#include "selection/SelectionMagnifierView.h"

#include "base/SystemColors.h"
#include "selection/PictureFixture.h"
#include "selection/SnapshotFixture.h"

#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QPalette>

#include <cmath>

namespace snapvane {

namespace {

using ::testing::Bool;
using ::testing::Combine;
using ::testing::Values;
using ::testing::ValuesIn;

constexpr int reach = LoupePixels::reach;
constexpr int side = LoupePixels::side;
constexpr PixelSize screenSize = {90, 70};

/// 85 % black where there is transparency.
QRgb blackOf(bool isTranslucent) {
    return isTranslucent ? qRgba(0, 0, 0, 217) : qRgba(0, 0, 0, 255);
}

/// A loupe over a pixel of a screen, counted from its upper-left corner.
SelectionMagnifierView viewAt(PixelPoint pixel, const DisplaySnapshot& snapshot) {
    SelectionMagnifierView view;
    view.snapshot = snapshot;
    view.localPoint = testing::localPlace(pixel, snapshot);
    view.globalPoint = view.localPoint;
    return view;
}

/// A picture of the loupe and the places in it, worked out from what is stated in points.
class Picture {
public:
    Picture(SelectionMagnifierView& view, double factor, bool isTranslucent)
        : m_scale(factor), m_drawn(view.draw(factor, isTranslucent)) {}

    const QImage& image() const { return m_drawn.image; }
    const std::vector<RoundedArea>& shape() const { return m_drawn.shape; }

    /// Pixels of a cell that nothing but its colour is seen in: not the grid, the frame, the cross
    /// or the ring.
    std::vector<QPoint> plainPixels(int column, int row) const {
        std::vector<QPoint> result;
        for (int y = edge(row) + border(); y < edge(row + 1) - border(); ++y) {
            for (int x = edge(column) + border(); x < edge(column + 1) - border(); ++x) {
                if (isPlain(x, y)) {
                    result.emplace_back(left() + x, top() + y);
                }
            }
        }
        return result;
    }

    /// From the middle of the circle to the middle of a pixel; points.
    double distance(int x, int y) const {
        return std::hypot(x + 0.5 - left() - edge(side) / 2.0, y + 0.5 - top() - edge(side) / 2.0) /
               m_scale;
    }

private:
    int rounded(double points) const { return static_cast<int>(std::round(points * m_scale)); }
    int edge(int cell) const { return rounded(8.0 * cell); }
    int left() const { return rounded(20); }
    int top() const { return rounded(8); }
    int border() const { return static_cast<int>(std::ceil(0.25 * m_scale)); }
    bool isPlain(int x, int y) const {
        const double toMiddleX = std::abs(x + 0.5 - (edge(reach) + edge(reach + 1)) / 2.0);
        const double toMiddleY = std::abs(y + 0.5 - (edge(reach) + edge(reach + 1)) / 2.0);
        const double line = 0.5 * m_scale + 1;
        const double length = 10 * m_scale + 1;
        const bool onCross = (toMiddleX <= line && toMiddleY <= length) ||
                             (toMiddleY <= line && toMiddleX <= length);
        const double farther = std::max(toMiddleX, toMiddleY);
        const bool onFrame = farther >= 3 * m_scale - 1 && farther <= 5 * m_scale + 1;
        const double distanceInPixels =
            std::hypot(x + 0.5 - edge(side) / 2.0, y + 0.5 - edge(side) / 2.0);
        const bool inRing = distanceInPixels < 58.5 * m_scale - 1;
        return inRing && !onCross && !onFrame;
    }

    double m_scale;
    SpritePicture m_drawn;
};

struct PlaceCase {
    const char* what;
    PixelPoint pixel;

    friend void PrintTo(const PlaceCase& example, std::ostream* stream) { *stream << example.what; }
};

const PlaceCase placeCases[] = {
    {"in the middle", {45, 35}},
    {"left edge", {0, 35}},
    {"right edge", {89, 35}},
    {"upper edge", {45, 0}},
    {"lower edge", {45, 69}},
    {"upper left corner", {0, 0}},
    {"upper right corner", {89, 0}},
    {"lower left corner", {0, 69}},
    {"lower right corner", {89, 69}},
    {"near the left edge", {3, 66}},
    {"near the right edge", {85, 4}},
    {"off the screen", {-60, 20}},
    {"beyond the upper right corner", {93, -30}},
};

class MagnifierPicture : public ::testing::TestWithParam<PlaceCase> {
protected:
    static void expectPixelsAround(PixelPoint place, double scale, bool isTranslucent) {
        SelectionMagnifierView view = viewAt(place, testing::snapshotOf(screenSize, scale));
        const Picture picture(view, scale, isTranslucent);
        int looked = 0;
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                const int x = place.x + column - reach;
                const int y = std::clamp(place.y + row - reach, 0, screenSize.height - 1);
                const bool isOnScreen = x >= 0 && x < screenSize.width;
                const QRgb expected =
                    isOnScreen ? testing::snapshotColor(x, y) : blackOf(isTranslucent);
                for (const QPoint& pixel : picture.plainPixels(column, row)) {
                    ++looked;
                    ASSERT_EQ(picture.image().pixel(pixel), expected)
                        << "cell " << column << ',' << row << ", pixel " << pixel.x() << ','
                        << pixel.y();
                }
            }
        }
        // Most of the circle's area is looked at.
        EXPECT_GT(looked, 5000 * scale * scale);
    }
};

TEST_P(MagnifierPicture, EnlargesThePixelsAroundThePointerUpright) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        for (const bool isTranslucent : {true, false}) {
            SCOPED_TRACE(::testing::Message() << scale << ", " << isTranslucent);
            expectPixelsAround(GetParam().pixel, scale, isTranslucent);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Places, MagnifierPicture, ValuesIn(placeCases));

TEST(MagnifierPictureOnce, TheScaleOfTheScreenAndOfTheSnapshotNeedNotBeTheSame) {
    const DisplaySnapshot snapshot = testing::snapshotOf(screenSize, 2);
    SelectionMagnifierView view = viewAt({45, 35}, snapshot);
    const Picture picture(view, 1.5, true);
    for (const QPoint& pixel : picture.plainPixels(3, 4)) {
        EXPECT_EQ(picture.image().pixel(pixel), testing::snapshotColor(45 + 3 - 7, 35 + 4 - 7));
    }
}

/// Scales and whether there is transparency.
class MagnifierLook : public ::testing::TestWithParam<std::tuple<double, bool>> {
protected:
    const double scale = std::get<0>(GetParam());
    const bool isTranslucent = std::get<1>(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Looks, MagnifierLook, Combine(Values(1.0, 1.33, 1.5, 2.0), Bool()));

TEST_P(MagnifierLook, HasTheSizeOfItsView) {
    SelectionMagnifierView view;
    const Picture picture(view, scale, isTranslucent);
    EXPECT_EQ(picture.image().size(), QSize(qRound(160 * scale), qRound(164 * scale)));
    EXPECT_EQ(picture.image().format(), QImage::Format_ARGB32_Premultiplied);
}

TEST_P(MagnifierLook, WithoutASnapshotTheCircleIsBlackAndUnmarked) {
    SelectionMagnifierView view;
    view.localPoint = {45, 35};
    const Picture picture(view, scale, isTranslucent);
    for (int y = 0; y < picture.image().height(); ++y) {
        for (int x = 0; x < picture.image().width(); ++x) {
            if (picture.distance(x, y) < 58.5 - 1 / scale) {
                ASSERT_EQ(picture.image().pixel(x, y), blackOf(isTranslucent)) << x << ',' << y;
            }
        }
    }
}

/// As for a pointer that has left the only screen that a picture could be taken of.
TEST_P(MagnifierLook, ColumnsOffTheScreenHaveNoGrid) {
    SelectionMagnifierView view = viewAt({0, 35}, testing::snapshotOf(screenSize, scale));
    const Picture picture(view, scale, isTranslucent);
    const int first = qRound(20 * scale) + qRound(7 * 8 * scale);
    const int above = qRound(8 * scale) + qRound(5 * 8 * scale);
    for (int y = above; y < above + qRound(8 * scale); ++y) {
        for (int x = first - 20; x < first; ++x) {
            ASSERT_EQ(picture.image().pixel(x, y), blackOf(isTranslucent)) << x << ',' << y;
        }
    }
}

TEST_P(MagnifierLook, HasTheGridOverTheCells) {
    DisplaySnapshot snapshot = testing::snapshotOf(screenSize, scale);
    snapshot.cgImage.fill(Qt::white);
    SelectionMagnifierView view = viewAt({45, 35}, snapshot);
    const Picture picture(view, scale, isTranslucent);
    for (int cell = 3; cell < 12; ++cell) {
        const int x = qRound(20 * scale) + qRound(cell * 8 * scale);
        const int y = qRound(8 * scale) + qRound(28 * scale);
        const QColor color = picture.image().pixelColor(x, y);
        EXPECT_LT(color.red(), 255) << cell;
        EXPECT_GE(color.red(), 120) << cell;
        EXPECT_EQ(color.alpha(), 255);
    }
}

TEST_P(MagnifierLook, FramesTheMiddleInYellowWithARedCross) {
    DisplaySnapshot snapshot = testing::snapshotOf(screenSize, scale);
    snapshot.cgImage.fill(Qt::black);
    SelectionMagnifierView view = viewAt({45, 35}, snapshot);
    const Picture picture(view, scale, isTranslucent);
    const int cellLeft = qRound(20 * scale) + qRound(56 * scale);
    const int cellTop = qRound(8 * scale) + qRound(56 * scale);
    const auto near = [](QColor a, QColor b) {
        return std::abs(a.red() - b.red()) < 3 && std::abs(a.green() - b.green()) < 3 &&
               std::abs(a.blue() - b.blue()) < 3;
    };
    const auto dimmed = [](QColor color) {
        return QColor(color.red() * 95 / 100, color.green() * 95 / 100, color.blue() * 95 / 100);
    };
    EXPECT_TRUE(
        near(picture.image().pixelColor(cellLeft, cellTop), dimmed(SystemColors::yellow())));
    // The cross's line is one or two pixels across, wherever rounding has put it.
    const int middle = cellTop + static_cast<int>(4 * scale);
    QColor reddest(Qt::black);
    for (int y = middle - 1; y <= middle + 1; ++y) {
        const QColor color = picture.image().pixelColor(cellLeft - static_cast<int>(4 * scale), y);
        if (color.red() > reddest.red()) {
            reddest = color;
        }
    }
    EXPECT_GT(reddest.red(), 0.4 * SystemColors::red().red());
    EXPECT_LT(reddest.green(), reddest.red() / 2);
}

TEST_P(MagnifierLook, HasAWhiteRing) {
    SelectionMagnifierView view = viewAt({45, 35}, testing::snapshotOf(screenSize, scale));
    const Picture picture(view, scale, isTranslucent);
    int seen = 0;
    for (int y = 0; y < picture.image().height(); ++y) {
        for (int x = 0; x < picture.image().width(); ++x) {
            const double distance = picture.distance(x, y);
            if (distance > 58.5 + 1 / scale && distance < 60 - 1 / scale) {
                const QColor color = picture.image().pixelColor(x, y);
                ASSERT_GE(std::min({color.red(), color.green(), color.blue()}), 225)
                    << x << ',' << y;
                ++seen;
            }
        }
    }
    if (scale >= 1.5) {
        EXPECT_GT(seen, 50);
    }
}

TEST_P(MagnifierLook, ASecondPictureDoesNotDependOnTheFirst) {
    const DisplaySnapshot snapshot = testing::snapshotOf(screenSize, scale);
    const double otherScale = scale == 1.5 ? 2.0 : 1.5;
    SelectionMagnifierView used = viewAt({0, 0}, snapshot);
    used.selectionSize = {123456, 123456};
    used.draw(scale, isTranslucent);
    used.snapshot.reset();
    used.draw(scale, !isTranslucent);
    used.snapshot = snapshot;
    used.draw(otherScale, isTranslucent);

    SelectionMagnifierView fresh = viewAt({88, 30}, snapshot);
    used.localPoint = fresh.localPoint;
    used.globalPoint = fresh.globalPoint;
    used.selectionSize = {};
    const Picture again(used, scale, isTranslucent);
    const Picture first(fresh, scale, isTranslucent);
    EXPECT_TRUE(testing::differingPixels(again.image(), first.image()).isEmpty());
    EXPECT_EQ(again.shape(), first.shape());
}

TEST_P(MagnifierLook, APictureThatIsKeptStaysAsItIs) {
    SelectionMagnifierView view = viewAt({20, 20}, testing::snapshotOf(screenSize, scale));
    const SpritePicture kept = view.draw(scale, isTranslucent);
    const QImage before = kept.image.copy();
    view.snapshot.reset();
    view.draw(scale, isTranslucent);
    EXPECT_TRUE(testing::differingPixels(kept.image, before).isEmpty());
}

TEST_P(MagnifierLook, TheLabelTellsThePointAndTheSelection) {
    const auto labelRegion = [this](GlobalPoint point, GlobalSize size) {
        SelectionMagnifierView view;
        view.globalPoint = point;
        view.selectionSize = size;
        const Picture picture(view, scale, isTranslucent);
        return picture.image().copy(picture.shape().at(1).area.toQRect());
    };
    const QImage one = labelRegion({12, 34}, {});
    EXPECT_EQ(one, labelRegion({12, 34}, {}));
    EXPECT_NE(one, labelRegion({12, 35}, {}));
    EXPECT_GT(labelRegion({12, 34}, {56, 78}).width(), one.width());
    EXPECT_EQ(labelRegion({12, 34}, {56, 0}), one);
}

class MagnifierShape : public ::testing::TestWithParam<double> {
protected:
    /// Whether the shape that the window is cut to has the middle of the pixel in it.
    static bool isInside(const std::vector<RoundedArea>& shape, int x, int y) {
        return std::any_of(shape.begin(), shape.end(), [x, y](const RoundedArea& rounded) {
            const QRectF area(rounded.area.toQRect());
            if (!area.contains(x + 0.5, y + 0.5)) {
                return false;
            }
            const double dx = std::max({area.left() + rounded.radius - (x + 0.5),
                                        x + 0.5 - (area.right() - rounded.radius), 0.0});
            const double dy = std::max({area.top() + rounded.radius - (y + 0.5),
                                        y + 0.5 - (area.bottom() - rounded.radius), 0.0});
            return std::hypot(dx, dy) <= rounded.radius;
        });
    }

    const double scale = GetParam();
};

TEST_P(MagnifierShape, IsACircleAndALabelInsideThePicture) {
    SelectionMagnifierView view = viewAt({45, 35}, testing::snapshotOf(screenSize, scale));
    for (const bool isTranslucent : {true, false}) {
        const Picture picture(view, scale, isTranslucent);
        ASSERT_EQ(picture.shape().size(), 2U);
        for (const RoundedArea& part : picture.shape()) {
            EXPECT_TRUE(picture.image().rect().contains(part.area.toQRect()));
        }
        const RoundedArea& circle = picture.shape()[0];
        EXPECT_EQ(circle.area.width, circle.area.height);
        EXPECT_EQ(circle.radius, circle.area.width / 2.0);
        EXPECT_FALSE(circle.area.toQRect().intersects(picture.shape()[1].area.toQRect()));
    }
}

/// The circle, its border and a dark rim of about a point.
TEST_P(MagnifierShape, FitsTheRim) {
    SelectionMagnifierView view;
    const Picture picture(view, scale, false);
    const std::vector<RoundedArea> circle = {picture.shape().at(0)};
    for (int y = 0; y < picture.image().height(); ++y) {
        for (int x = 0; x < picture.image().width(); ++x) {
            const double distance = picture.distance(x, y);
            if (distance < 61.5 - 1 / scale) {
                ASSERT_TRUE(isInside(circle, x, y)) << x << ',' << y;
            } else if (distance > 61.5 + 1 / scale) {
                ASSERT_FALSE(isInside(circle, x, y)) << x << ',' << y;
            }
        }
    }
}

/// Whatever stands on the glass was drawn: nothing shines through, and the circle's hard edge is
/// dark all around.
TEST_P(MagnifierShape, HasNoUnpaintedPixelInIt) {
    SelectionMagnifierView view = viewAt({0, 0}, testing::snapshotOf(screenSize, scale));
    const Picture picture(view, scale, false);
    const std::vector<RoundedArea> circle = {picture.shape().at(0)};
    for (int y = 0; y < picture.image().height(); ++y) {
        for (int x = 0; x < picture.image().width(); ++x) {
            const QColor color = picture.image().pixelColor(x, y);
            ASSERT_EQ(color.alpha(), 255);
            const bool edge = isInside(circle, x, y) &&
                              (!isInside(circle, x - 1, y) || !isInside(circle, x + 1, y) ||
                               !isInside(circle, x, y - 1) || !isInside(circle, x, y + 1));
            if (edge) {
                ASSERT_LE(color.red(), 120) << x << ',' << y;
            }
        }
    }
}

TEST_P(MagnifierShape, NothingOfTheLabelIsCutOff) {
    SelectionMagnifierView view = viewAt({45, 35}, testing::snapshotOf(screenSize, scale));
    view.globalPoint = {-123456, -123456};
    view.selectionSize = {123456, 123456};
    const Picture picture(view, scale, false);
    for (int y = picture.shape()[1].area.y - 3; y < picture.image().height(); ++y) {
        for (int x = 0; x < picture.image().width(); ++x) {
            if (!isInside(picture.shape(), x, y)) {
                ASSERT_EQ(picture.image().pixel(x, y), qRgb(0, 0, 0)) << x << ',' << y;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, MagnifierShape, Values(1.0, 1.1, 1.33, 1.5, 1.75, 2.0));

TEST(MagnifierTransparency, AroundCircleAndLabelThereIsOnlyShadow) {
    SelectionMagnifierView view = viewAt({45, 35}, testing::snapshotOf(screenSize, 1));
    const Picture picture(view, 1, true);
    const QRect label = picture.shape().at(1).area.toQRect();
    for (int y = 0; y < picture.image().height(); ++y) {
        for (int x = 0; x < picture.image().width(); ++x) {
            if (picture.distance(x, y) > 61.5 && !label.contains(x, y)) {
                const QRgb pixel = picture.image().pixel(x, y);
                ASSERT_EQ(pixel & RGB_MASK, 0U) << x << ',' << y;
                ASSERT_LE(qAlpha(pixel), 102) << x << ',' << y;
            }
        }
    }
    EXPECT_EQ(picture.image().pixel(0, 0), 0U);
    EXPECT_EQ(picture.image().pixel(159, 0), 0U);
    EXPECT_EQ(picture.image().pixel(0, 163), 0U);
    EXPECT_EQ(picture.image().pixel(159, 163), 0U);
}

TEST(MagnifierTransparency, TheEdgeIsSmooth) {
    SelectionMagnifierView view = viewAt({45, 35}, testing::snapshotOf(screenSize, 1));
    const QImage image = view.draw(1, true).image;
    int partly = 0;
    for (int x = 0; x < 160; ++x) {
        const int red = qRed(image.pixel(x, 9));
        partly += red > 20 && red < 220 ? 1 : 0;
    }
    EXPECT_GT(partly, 4);
}

TEST(MagnifierTransparency, ATranslucentSnapshotStandsOverTheBlack) {
    struct Case {
        int alpha = 0;
        bool isTranslucent = false;
        int expectedAlpha = 0;
    };
    // 85 % black shows through what the picture leaves of it.
    const Case cases[] = {{255, true, 255},  {255, false, 255}, {128, true, 236},
                          {128, false, 255}, {0, true, 217},    {0, false, 255}};
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.alpha << ", " << c.isTranslucent);
        SelectionMagnifierView view = viewAt({45, 35}, testing::snapshotOf(screenSize, 1, c.alpha));
        const Picture picture(view, 1, c.isTranslucent);
        const QRgb premultiplied =
            qPremultiply(testing::snapshotColor(45 + 2 - reach, 35 + 9 - reach, c.alpha));
        for (const QPoint& place : picture.plainPixels(2, 9)) {
            const QRgb pixel = picture.image().pixel(place);
            const auto* raw =
                reinterpret_cast<const QRgb*>(picture.image().constScanLine(place.y())) + place.x();
            EXPECT_EQ(*raw & RGB_MASK, premultiplied & RGB_MASK);
            EXPECT_NEAR(qAlpha(pixel), c.expectedAlpha, 1);
        }
    }
}

TEST(MagnifierStyle, ColoursAreLookedUpWhenToldTo) {
    DisplaySnapshot snapshot = testing::snapshotOf(screenSize, 2);
    snapshot.cgImage.fill(Qt::black);
    SelectionMagnifierView view = viewAt({45, 35}, snapshot);
    const QPalette before = QGuiApplication::palette();
    const auto paletteOf = [](QColor window, QColor text) {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        return palette;
    };
    QGuiApplication::setPalette(paletteOf(Qt::white, Qt::black));
    const QImage light = view.draw(2, true).image.copy();
    QGuiApplication::setPalette(paletteOf(Qt::black, Qt::white));
    const QImage kept = view.draw(2, true).image.copy();
    view.reloadStyle();
    const QImage dark = view.draw(2, true).image.copy();
    QGuiApplication::setPalette(before);
    EXPECT_EQ(kept, light) << "in the middle of a session nothing changes";
    EXPECT_NE(dark, light);
}

} // namespace

} // namespace snapvane
