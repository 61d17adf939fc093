#include "platform/x11/WindowStack.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

const DeviceRect screen = {{0, 0}, {1000, 800}};

x11::StackedWindow windowAt(std::uint32_t id, const QRect& rect) {
    x11::StackedWindow stacked;
    stacked.window.id = id;
    stacked.window.viewable = true;
    stacked.shape = rect;
    return stacked;
}

/// 1 at the bottom, 2 above it and partly beside it, 3 over part of both.
x11::WindowStack threeWindows(bool composited) {
    x11::WindowStack stack;
    stack.windows = {windowAt(1, {100, 100, 200, 200}), windowAt(2, {200, 200, 200, 200}),
                     windowAt(3, {150, 150, 100, 100})};
    stack.composited = composited;
    return stack;
}

} // namespace

TEST(WindowStack, KnowsWhereExcludedWindowsAreSeen) {
    struct Case {
        const char* name;
        std::vector<std::uint32_t> excluded;
        QRegion expected;
    };
    const QRegion first(100, 100, 200, 200);
    const QRegion second(200, 200, 200, 200);
    const QRegion third(150, 150, 100, 100);
    const Case cases[] = {
        {"nothing excluded", {}, {}},
        {"an unknown one", {77}, {}},
        {"the lowest", {1}, first - second - third},
        {"the one between", {2}, second - third},
        {"the highest", {3}, third},
        {"the lower two", {1, 2}, (first + second) - third},
        {"lowest and highest", {3, 1}, (first - second) + third},
        {"all", {1, 2, 3}, first + second + third},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(threeWindows(false).regionOf(c.excluded, screen), c.expected);
    }
}

TEST(WindowStack, TakesNoWindowForOpaqueUnderACompositor) {
    EXPECT_EQ(threeWindows(true).regionOf({1}, screen), QRegion(100, 100, 200, 200));
    EXPECT_EQ(threeWindows(true).regionOf({2}, screen), QRegion(200, 200, 200, 200));
}

TEST(WindowStack, LooksAtOneAreaOnly) {
    const DeviceRect right = {{250, 0}, {1000, 800}};
    EXPECT_EQ(threeWindows(false).regionOf({2}, right), QRegion(250, 200, 150, 200));
    const DeviceRect elsewhere = {{500, 500}, {100, 100}};
    EXPECT_TRUE(threeWindows(false).regionOf({1, 2, 3}, elsewhere).isEmpty());
}

TEST(WindowStack, SeesNothingOfAWindowThatIsCoveredWholly) {
    x11::WindowStack stack;
    stack.windows = {windowAt(1, {100, 100, 50, 50}), windowAt(2, {0, 0, 400, 400})};
    EXPECT_TRUE(stack.regionOf({1}, screen).isEmpty());
    stack.composited = true;
    EXPECT_EQ(stack.regionOf({1}, screen), QRegion(100, 100, 50, 50));
}

TEST(WindowStack, DiffersInAllThatDecidesThePicture) {
    const x11::WindowStack stack = threeWindows(false);
    EXPECT_EQ(stack, threeWindows(false));
    x11::WindowStack moved = stack;
    moved.windows[1].shape.translate(1, 0);
    EXPECT_NE(moved, stack);
    x11::WindowStack restacked = stack;
    std::swap(restacked.windows[0], restacked.windows[1]);
    EXPECT_NE(restacked, stack);
    x11::WindowStack fainter = stack;
    fainter.windows[2].opacity = 1;
    EXPECT_NE(fainter, stack);
    EXPECT_NE(threeWindows(true), stack);
}

} // namespace snapvane
