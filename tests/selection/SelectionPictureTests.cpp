#include "selection/SelectionPicture.h"

#include "base/SystemColors.h"
#include "selection/PictureFixture.h"
#include "selection/Required.h"
#include "selection/SelectionOutline.h"

#include <gmock/gmock.h>

#include <random>

namespace snapvane {

namespace {

using testing::fixtureDim;
using testing::paintedWhole;
using testing::pixelCount;
using testing::required;
using testing::singleScreen;
using ::testing::Values;

SelectionPicture pictureOf(const Screen& screen, const GlobalRect& selection) {
    return SelectionPicture::of(screen, selection, screen.frame, 1.5);
}

// 30 % of 255, as a premultiplied black.
const QRgb veil = qRgba(0, 0, 0, 77);

TEST(SelectionPicture, WithoutASelectionThereIsOnlyVeil) {
    const SelectionPicture picture = pictureOf(singleScreen({64, 48}, 1), {});
    EXPECT_FALSE(picture.hole.has_value());
    EXPECT_FALSE(picture.label.has_value());
    const QImage surface = paintedWhole(picture);
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 64; ++x) {
            ASSERT_EQ(surface.pixel(x, y), veil) << x << ',' << y;
        }
    }
}

/// A selection without width or height cuts no hole.
TEST(SelectionPicture, ALineIsNoSelection) {
    const Screen screen = singleScreen({64, 48}, 1);
    EXPECT_EQ(pictureOf(screen, {{10, 10}, {20, 0}}), pictureOf(screen, {}));
    EXPECT_EQ(pictureOf(screen, {{10, 10}, {0, 20}}), pictureOf(screen, {}));
}

TEST(SelectionPicture, HoleIsInPixelsOfTheScreen) {
    EXPECT_EQ(pictureOf(singleScreen({800, 600}, 1), {{10, 20}, {100, 50}}).hole,
              (PixelRect{10, 530, 100, 50}));
    EXPECT_EQ(pictureOf(singleScreen({800, 600}, 2), {{10, 20}, {100, 50}}).hole,
              (PixelRect{20, 460, 200, 100}));
    const SelectionPicture picture =
        pictureOf(singleScreen({800, 600}, 1.25), {{8, 16}, {100, 50}});
    EXPECT_EQ(picture.hole, (PixelRect{10, 518, 125, 62}));
    EXPECT_EQ(picture.borderWidth, 1.875);
    EXPECT_EQ(picture.scale, 1.25);
    EXPECT_EQ(picture.size, (PixelSize{800, 600}));
}

/// The label is placed within the whole overlay, not within one screen of it.
TEST(SelectionPicture, LabelKeepsToTheWholeOverlay) {
    const ScreenList screens =
        ScreenMapping::layOut({{1, QStringLiteral("L"), {{0, 0}, {400, 300}}, 1, {}},
                               {2, QStringLiteral("R"), {{400, 0}, {400, 300}}, 1, {}}});
    const GlobalRect bounds{{0, 0}, {800, 300}};
    const GlobalRect selection{{380, 100}, {40, 40}};
    const auto left = SelectionPicture::of(screens[0], selection, bounds, 1.5);
    const auto right = SelectionPicture::of(screens[1], selection, bounds, 1.5);
    const PixelRect box = required(left.label).box;
    EXPECT_EQ(box.x, required(right.label).box.x + 400);
    EXPECT_EQ(box.x + box.width / 2, 400);
    EXPECT_EQ(box.y + box.height, 300 - 140 - 8);
}

class PaintedSelection : public ::testing::TestWithParam<double> {
protected:
    const double scale = GetParam();
    const Screen screen =
        singleScreen({static_cast<int>(320 * scale), static_cast<int>(240 * scale)}, scale);
    const SelectionPicture picture = pictureOf(screen, {{80, 60}, {160, 100}});
    const QImage surface = paintedWhole(picture);
    const int reach = SelectionOutline::reach(picture.borderWidth);
    const QRect hole = required(picture.hole).toQRect();
};

TEST_P(PaintedSelection, InsideIsBareAndOutsideIsVeiled) {
    const QRect inside = hole.adjusted(reach, reach, -reach, -reach);
    const QRect outline = hole.adjusted(-reach, -reach, reach, reach);
    const QRect label = required(picture.label).box.toQRect();
    for (int y = 0; y < surface.height(); ++y) {
        for (int x = 0; x < surface.width(); ++x) {
            if (label.contains(x, y)) {
                continue;
            }
            if (inside.contains(x, y)) {
                ASSERT_EQ(surface.pixel(x, y), 0U) << x << ',' << y;
            } else if (!outline.contains(x, y)) {
                ASSERT_EQ(surface.pixel(x, y), veil) << x << ',' << y;
            } else {
                ASSERT_GT(qBlue(surface.pixel(x, y)), 0) << x << ',' << y;
            }
        }
    }
}

TEST_P(PaintedSelection, OutlineIsBlueByItsCoverage) {
    const QColor blue = SystemColors::blue();
    for (const auto& cell : SelectionOutline::cells(required(picture.hole), picture.borderWidth)) {
        const QColor shown = surface.pixelColor(cell.area.x, cell.area.y);
        const bool isInHole = hole.contains(cell.area.x, cell.area.y);
        const double under = isInHole ? 0 : fixtureDim;
        EXPECT_NEAR(shown.alphaF(), cell.coverage + under * (1 - cell.coverage), 0.01);
        if (cell.coverage == 1) {
            EXPECT_EQ(shown, blue);
        }
    }
}

TEST_P(PaintedSelection, DoesNotDependOnWhatWasThere) {
    EXPECT_EQ(surface, paintedWhole(picture, Qt::transparent));
    EXPECT_EQ(surface, paintedWhole(picture, Qt::white));
}

INSTANTIATE_TEST_SUITE_P(Scales, PaintedSelection, Values(1.0, 1.25, 1.5, 2.0));

TEST(SelectionPicture, DifferenceToItselfIsNothing) {
    const Screen screen = singleScreen({320, 200}, 1.25);
    const SelectionPicture picture = pictureOf(screen, {{30, 30}, {100, 50}});
    EXPECT_TRUE(SelectionPicture::difference(picture, picture).isEmpty());
    EXPECT_TRUE(
        SelectionPicture::difference(pictureOf(screen, {}), pictureOf(screen, {})).isEmpty());
}

TEST(SelectionPicture, DifferenceStaysOnTheScreen) {
    const Screen screen = singleScreen({320, 200}, 1);
    const QRegion changed = SelectionPicture::difference(
        pictureOf(screen, {{-50, -50}, {500, 100}}), pictureOf(screen, {{-50, -50}, {510, 110}}));
    EXPECT_FALSE(changed.isEmpty());
    EXPECT_TRUE(QRect(0, 0, 320, 200).contains(changed.boundingRect()));
}

/// Whatever two selections, also ones that reach beyond the screen: no changed pixel is left out.
TEST(SelectionPicture, DifferenceCoversEachChangedPixel) {
    std::mt19937 random(20240229);
    const auto number = [&random](int from, int to) {
        return std::uniform_int_distribution(from, to)(random);
    };
    for (int round = 0; round < 300; ++round) {
        const double scale =
            std::array{1.0, 1.25, 1.5, 2.0}.at(static_cast<std::size_t>(round) % 4);
        const Screen screen = singleScreen({160, 120}, scale);
        const auto selection = [&] {
            return rectBetween({number(-80, 640) / 4.0, number(-80, 480) / 4.0},
                               {number(-80, 640) / 4.0, number(-80, 480) / 4.0});
        };
        const SelectionPicture before =
            pictureOf(screen, number(0, 9) == 0 ? GlobalRect() : selection());
        const SelectionPicture after =
            pictureOf(screen, number(0, 9) == 0 ? GlobalRect() : selection());
        const QRegion missed = testing::differingPixels(paintedWhole(before), paintedWhole(after)) -
                               SelectionPicture::difference(before, after);
        ASSERT_TRUE(missed.isEmpty()) << "round " << round;
    }
}

/// A small step of a large selection repaints strips, outline and label, not the desktop.
TEST(SelectionPicture, SmallStepsAreCheap) {
    const Screen screen = singleScreen({1920, 1080}, 1);
    const SelectionPicture before = pictureOf(screen, {{100, 100}, {1200, 700}});
    const SelectionPicture after = pictureOf(screen, {{100, 100}, {1205, 703}});
    const int changed = pixelCount(SelectionPicture::difference(before, after));
    EXPECT_GT(changed, 0);
    const int strips = 5 * 703 + 3 * 1205;
    const int outlines = 2 * 2 * (1205 + 703) * 2;
    const PixelRect label = required(after.label).box;
    const int labels = 2 * label.width * label.height;
    EXPECT_LE(changed, strips + outlines + labels);
    EXPECT_LT(changed, 1920 * 1080 / 4);
}

} // namespace

} // namespace snapvane
