#include "capture/ScreenCoordinateConverter.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

Screen screenAt(const GlobalRect& frame) {
    Screen screen;
    screen.frame = frame;
    return screen;
}

GlobalRect unionOf(const std::vector<GlobalRect>& frames) {
    ScreenList screens;
    for (const GlobalRect& frame : frames) {
        screens.push_back(screenAt(frame));
    }
    return ScreenCoordinateConverter::unionFrameOfAllScreens(screens);
}

} // namespace

TEST(ScreenCoordinateConverter, GivesTheSmallestRectangleAroundAllScreens) {
    const GlobalRect first = {{0, 0}, {1920, 1080}};
    EXPECT_EQ(unionOf({first}), first);
    EXPECT_EQ(unionOf({first, {{1920, 56}, {1280, 1024}}}), (GlobalRect{{0, 0}, {3200, 1080}}));
    EXPECT_EQ(unionOf({first, {{-1280, -200}, {1280, 1024}}, {{100, 1080}, {780.5, 600}}}),
              (GlobalRect{{-1280, -200}, {3200, 1880}}));
    EXPECT_EQ(unionOf({{{500, 500}, {10, 10}}, {{600, 600}, {10, 10}}}),
              (GlobalRect{{500, 500}, {110, 110}}));
}

TEST(ScreenCoordinateConverter, GivesTheZeroRectangleWithoutAScreen) {
    EXPECT_EQ(unionOf({}), GlobalRect{});
}

} // namespace snapvane
