#include "base/Geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace snapvane {

namespace {

/// The area 10 … 40 by 20 … 60, written in each way there is.
const GlobalRect sameArea[] = {
    {{10, 20}, {30, 40}}, {{40, 20}, {-30, 40}}, {{10, 60}, {30, -40}}, {{40, 60}, {-30, -40}}};
const GlobalRect area = sameArea[0];

struct Pair {
    const char* name = nullptr;
    GlobalRect a;
    GlobalRect b;
    GlobalRect shared;
};

const Pair pairs[] = {
    {"overlap", area, {{30, 50}, {100, 100}}, {{30, 50}, {10, 10}}},
    {"inside", area, {{12, 22}, {2, 3}}, {{12, 22}, {2, 3}}},
    {"equal", area, area, area},
    {"negative size", area, {{130, 150}, {-100, -100}}, {{30, 50}, {10, 10}}},
    {"touching on the right", area, {{40, 20}, {10, 40}}, {}},
    {"touching on the left", area, {{0, 20}, {10, 40}}, {}},
    {"touching above", area, {{10, 60}, {30, 5}}, {}},
    {"touching below", area, {{10, 0}, {30, 20}}, {}},
    {"touching in a corner", area, {{40, 60}, {1, 1}}, {}},
    {"apart", area, {{100, 100}, {5, 5}}, {}},
    {"a line inside", area, {{20, 30}, {0, 10}}, {}},
    {"a sliver", area, {{39.5, 20}, {10, 40}}, {{39.5, 20}, {0.5, 40}}},
};

} // namespace

TEST(GlobalRect, AnswersForTheSameAreaWhateverTheSignOfTheSize) {
    for (const GlobalRect& rect : sameArea) {
        SCOPED_TRACE(::testing::Message() << rect.size.width << " x " << rect.size.height);
        EXPECT_EQ(rect.width(), 30);
        EXPECT_EQ(rect.height(), 40);
        EXPECT_EQ(rect.minX(), 10);
        EXPECT_EQ(rect.midX(), 25);
        EXPECT_EQ(rect.maxX(), 40);
        EXPECT_EQ(rect.minY(), 20);
        EXPECT_EQ(rect.midY(), 40);
        EXPECT_EQ(rect.maxY(), 60);
        EXPECT_EQ(rect.standardized(), area);
        EXPECT_FALSE(rect.isEmpty());
        EXPECT_EQ(rect.offsetBy(5, -7).standardized(), (GlobalRect{{15, 13}, {30, 40}}));
    }
}

TEST(GlobalRect, ContainsItsLeftAndBottomBordersOnly) {
    for (const GlobalRect& rect : sameArea) {
        SCOPED_TRACE(::testing::Message() << rect.size.width << " x " << rect.size.height);
        EXPECT_TRUE(rect.contains({10, 20}));
        EXPECT_TRUE(rect.contains({25, 40}));
        EXPECT_TRUE(rect.contains({39.999, 59.999}));
        EXPECT_FALSE(rect.contains({40, 30}));
        EXPECT_FALSE(rect.contains({30, 60}));
        EXPECT_FALSE(rect.contains({40, 60}));
        EXPECT_FALSE(rect.contains({9.999, 30}));
        EXPECT_FALSE(rect.contains({30, 19.999}));
    }
    EXPECT_FALSE((GlobalRect{{1, 1}, {0, 5}}).contains({1, 1}));
}

TEST(GlobalRect, IntersectsWhereThereIsAreaInCommon) {
    for (const Pair& pair : pairs) {
        SCOPED_TRACE(pair.name);
        const bool expected = pair.shared != GlobalRect{};
        EXPECT_EQ(pair.a.intersects(pair.b), expected);
        EXPECT_EQ(pair.b.intersects(pair.a), expected);
        EXPECT_EQ(pair.a.intersection(pair.b), pair.shared);
        EXPECT_EQ(pair.b.intersection(pair.a), pair.shared);
    }
}

TEST(GlobalRect, IsEmptyWithoutWidthOrHeight) {
    EXPECT_TRUE((GlobalRect{}).isEmpty());
    EXPECT_TRUE((GlobalRect{{3, 4}, {0, 9}}).isEmpty());
    EXPECT_TRUE((GlobalRect{{3, 4}, {-9, 0}}).isEmpty());
    EXPECT_TRUE((GlobalRect{{3, 4}, {std::numeric_limits<double>::quiet_NaN(), 9}}).isEmpty());
    EXPECT_FALSE((GlobalRect{{3, 4}, {-0.001, 0.001}}).isEmpty());
}

TEST(GlobalRect, UnionIsTheSmallestRectangleAroundBoth) {
    const GlobalRect other = {{-5, 100}, {3, 7}};
    for (const GlobalRect& rect : sameArea) {
        EXPECT_EQ(rect.unionWith(other), (GlobalRect{{-5, 20}, {45, 87}}));
        EXPECT_EQ(other.unionWith(rect), (GlobalRect{{-5, 20}, {45, 87}}));
        EXPECT_EQ(rect.unionWith({{12, 22}, {1, 1}}), area);
    }
}

TEST(GlobalRect, StandsBetweenTwoCornersWhicheverComesFirst) {
    const GlobalPoint corners[][2] = {
        {{10, 20}, {40, 60}}, {{40, 60}, {10, 20}}, {{10, 60}, {40, 20}}, {{40, 20}, {10, 60}}};
    for (const auto& corner : corners) {
        EXPECT_EQ(rectBetween(corner[0], corner[1]), area);
    }
    EXPECT_EQ(rectBetween({3, 4}, {3, 4}), (GlobalRect{{3, 4}, {0, 0}}));
}

TEST(PixelRect, IsEmptyWithoutPixels) {
    EXPECT_FALSE((PixelRect{0, 0, 1, 1}).isEmpty());
    EXPECT_TRUE((PixelRect{5, 5, 0, 1}).isEmpty());
    EXPECT_TRUE((PixelRect{5, 5, 1, 0}).isEmpty());
    EXPECT_TRUE((PixelRect{5, 5, -3, 4}).isEmpty());
}

TEST(PixelRect, ConvertsToQtAndBack) {
    const PixelRect rect = {-3, 7, 11, 13};
    EXPECT_EQ(rect.toQRect(), QRect(-3, 7, 11, 13));
    EXPECT_EQ(PixelRect::fromQRect(rect.toQRect()), rect);
}

TEST(DeviceRect, ContainsThePixelsFromItsOriginOn) {
    const DeviceRect rect = {{-10, 5}, {4, 2}};
    EXPECT_TRUE(rect.contains({-10, 5}));
    EXPECT_TRUE(rect.contains({-7, 6}));
    EXPECT_FALSE(rect.contains({-6, 5}));
    EXPECT_FALSE(rect.contains({-10, 7}));
    EXPECT_FALSE(rect.contains({-11, 5}));
    EXPECT_FALSE(rect.contains({-10, 4}));
    EXPECT_FALSE((DeviceRect{{0, 0}, {0, 0}}).contains({0, 0}));
}

} // namespace snapvane
