#include "selection/SelectionOutline.h"

#include <gmock/gmock.h>

#include <map>

namespace snapvane {

namespace {

using PixelMap = std::map<std::pair<int, int>, double>;

/// The coverage by pixel; a pixel in two cells is a failure.
PixelMap pixels(const PixelRect& rect, double width) {
    PixelMap result;
    for (const SelectionOutline::Cell& cell : SelectionOutline::cells(rect, width)) {
        EXPECT_FALSE(cell.area.isEmpty());
        for (int y = cell.area.y; y < cell.area.y + cell.area.height; ++y) {
            for (int x = cell.area.x; x < cell.area.x + cell.area.width; ++x) {
                const bool isNew = result.emplace(std::pair(x, y), cell.coverage).second;
                EXPECT_TRUE(isNew) << "two cells share " << x << ',' << y;
            }
        }
    }
    return result;
}

double coverage(const PixelMap& map, int x, int y) {
    const auto found = map.find({x, y});
    return found == map.end() ? 0 : found->second;
}

struct Edges {
    double left, top, right, bottom;
};

Edges grown(const PixelRect& rect, double distance) {
    return {rect.x - distance, rect.y - distance, rect.x + rect.width + distance,
            rect.y + rect.height + distance};
}

/// The part of a pixel that lies within the edges.
double overlap(const Edges& edges, int x, int y) {
    const double width = std::min(edges.right, x + 1.0) - std::max(edges.left, 1.0 * x);
    const double height = std::min(edges.bottom, y + 1.0) - std::max(edges.top, 1.0 * y);
    return std::max(0.0, width) * std::max(0.0, height);
}

TEST(SelectionOutline, ReachIsHalfTheWidthInWholePixels) {
    EXPECT_EQ(SelectionOutline::reach(1.5), 1);
    EXPECT_EQ(SelectionOutline::reach(1.875), 1);
    EXPECT_EQ(SelectionOutline::reach(2), 1);
    EXPECT_EQ(SelectionOutline::reach(2.25), 2);
    EXPECT_EQ(SelectionOutline::reach(3), 2);
}

TEST(SelectionOutline, OneAndAHalfPixelsAreTwoRowsOfThreeQuarters) {
    const PixelMap map = pixels({10, 20, 100, 50}, 1.5);
    for (const int y : {19, 20, 69, 70}) {
        EXPECT_EQ(coverage(map, 60, y), 0.75) << y;
    }
    for (const int x : {9, 10, 109, 110}) {
        EXPECT_EQ(coverage(map, x, 45), 0.75) << x;
    }
    for (const int y : {18, 21, 68, 71}) {
        EXPECT_EQ(coverage(map, 60, y), 0) << y;
    }
    EXPECT_EQ(coverage(map, 60, 45), 0);
}

TEST(SelectionOutline, CornersAreSquare) {
    const PixelMap map = pixels({10, 20, 100, 50}, 1.5);
    EXPECT_EQ(coverage(map, 9, 19), 0.75 * 0.75);
    EXPECT_EQ(coverage(map, 10, 19), 0.75);
    EXPECT_EQ(coverage(map, 9, 20), 0.75);
    // Only the quarter beyond the stroke's inner corner is free.
    EXPECT_EQ(coverage(map, 10, 20), 1 - 0.25 * 0.25);
    EXPECT_EQ(coverage(map, 11, 21), 0);
    EXPECT_EQ(coverage(map, 110, 70), 0.75 * 0.75);
    EXPECT_EQ(coverage(map, 109, 69), 1 - 0.25 * 0.25);
}

TEST(SelectionOutline, ThreePixelsAreHalfSolidHalfFaint) {
    const PixelMap map = pixels({10, 20, 100, 50}, 3);
    EXPECT_EQ(coverage(map, 60, 18), 0.5);
    EXPECT_EQ(coverage(map, 60, 19), 1);
    EXPECT_EQ(coverage(map, 60, 20), 1);
    EXPECT_EQ(coverage(map, 60, 21), 0.5);
    EXPECT_EQ(coverage(map, 60, 22), 0);
}

TEST(SelectionOutline, CellsAreFew) {
    EXPECT_LE(SelectionOutline::cells({0, 0, 2000, 1000}, 3).size(), 100U);
}

/// Scales; each example is tried with tiny and larger rectangles.
class SelectionOutlineExact : public ::testing::TestWithParam<double> {
protected:
    static std::vector<PixelRect> rects() {
        std::vector<PixelRect> result;
        for (const int width : {0, 1, 2, 3, 4, 5, 40}) {
            for (const int height : {0, 1, 2, 3, 4, 5, 31}) {
                result.push_back({-7, 5, width, height});
            }
        }
        return result;
    }
    static std::string described(const PixelRect& rect) {
        return std::to_string(rect.width) + " x " + std::to_string(rect.height);
    }

    const double width = 1.5 * GetParam();
};

TEST_P(SelectionOutlineExact, EachPixelHasItsPartOfTheStroke) {
    for (const PixelRect& rect : rects()) {
        SCOPED_TRACE(described(rect));
        const PixelMap map = pixels(rect, width);
        const Edges outer = grown(rect, width / 2);
        const Edges inner = grown(rect, -width / 2);
        const bool hasInside = inner.right > inner.left && inner.bottom > inner.top;
        const int margin = 5;
        for (int y = rect.y - margin; y < rect.y + rect.height + margin; ++y) {
            for (int x = rect.x - margin; x < rect.x + rect.width + margin; ++x) {
                const double expected =
                    overlap(outer, x, y) - (hasInside ? overlap(inner, x, y) : 0);
                EXPECT_NEAR(coverage(map, x, y), expected, 1e-9) << x << ',' << y;
            }
        }
    }
}

TEST_P(SelectionOutlineExact, NoCellLiesBeyondTheReach) {
    const int reach = SelectionOutline::reach(width);
    for (const PixelRect& rect : rects()) {
        SCOPED_TRACE(described(rect));
        const QRect outer = rect.toQRect().adjusted(-reach, -reach, reach, reach);
        const QRect inner = rect.toQRect().adjusted(reach, reach, -reach, -reach);
        for (const SelectionOutline::Cell& cell : SelectionOutline::cells(rect, width)) {
            EXPECT_TRUE(outer.contains(cell.area.toQRect()));
            EXPECT_FALSE(inner.isValid() && inner.intersects(cell.area.toQRect()));
            EXPECT_GT(cell.coverage, 0);
            EXPECT_LE(cell.coverage, 1);
        }
    }
}

TEST_P(SelectionOutlineExact, CoverageAddsUpToTheArea) {
    for (const PixelRect& rect : rects()) {
        SCOPED_TRACE(described(rect));
        double sum = 0;
        for (const SelectionOutline::Cell& cell : SelectionOutline::cells(rect, width)) {
            sum += cell.coverage * cell.area.width * cell.area.height;
        }
        const double inside =
            std::max(0.0, rect.width - width) * std::max(0.0, rect.height - width);
        EXPECT_NEAR(sum, (rect.width + width) * (rect.height + width) - inside, 1e-9);
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, SelectionOutlineExact,
                         ::testing::Values(1.0, 1.25, 1.5, 1.75, 2.0, 3.0));

} // namespace

} // namespace snapvane
