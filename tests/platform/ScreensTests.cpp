#include "Layouts.h"
#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

namespace snapvane {

TEST(Screens, TakeTheFirstForTheMainScreen) {
    null::NullScreens screens;
    screens.screens = ScreenMapping::layOut(
        {nativeScreen(5, {{0, 0}, {100, 100}}), nativeScreen(6, {{100, 0}, {100, 100}})});
    ASSERT_TRUE(screens.mainScreen().has_value());
    EXPECT_EQ(screens.mainScreen()->id, 5U);
    screens.screens.clear();
    EXPECT_FALSE(screens.mainScreen().has_value());
}

TEST(Screens, FindTheFirstThatContainsAPoint) {
    const ScreenList screens = ScreenMapping::layOut({nativeScreen(1, {{0, 0}, {100, 100}}),
                                                      nativeScreen(2, {{100, 0}, {100, 100}}),
                                                      nativeScreen(3, {{150, 0}, {100, 100}})});
    const auto idAt = [&screens](double x, double y) {
        const auto screen = screenContaining(screens, {x, y});
        return screen ? screen->id : 0;
    };
    EXPECT_EQ(idAt(0, 0), 1U);
    EXPECT_EQ(idAt(99.9, 99.9), 1U);
    EXPECT_EQ(idAt(100, 0), 2U);
    EXPECT_EQ(idAt(175, 50), 2U);
    EXPECT_EQ(idAt(200, 50), 3U);
    EXPECT_EQ(idAt(250, 50), 0U);
    EXPECT_EQ(idAt(0, 100), 0U);
    EXPECT_EQ(idAt(-0.1, 0), 0U);
    EXPECT_FALSE(screenContaining({}, {0, 0}).has_value());
}

} // namespace snapvane
