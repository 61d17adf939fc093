#include "platform/x11/CompositorBarrier.h"

#include <gtest/gtest.h>

namespace snapvane {

using x11::probePlace;
using x11::ProbePlace;

namespace {

const DeviceRect leftScreen = {{0, 0}, {100, 80}};
const DeviceRect rightScreen = {{100, 10}, {60, 50}};

} // namespace

TEST(ProbePlace, IsACornerOutsideTheArea) {
    struct Case {
        const char* name;
        DeviceRect area;
        std::vector<DeviceRect> screens;
        ProbePlace place;
    };
    const Case cases[] = {
        {"in the middle", {{10, 10}, {20, 20}}, {leftScreen}, {{0, 0}, false}},
        {"no area", {}, {leftScreen}, {{0, 0}, false}},
        {"over the upper left", {{0, 0}, {50, 40}}, {leftScreen}, {{99, 0}, false}},
        {"over the upper half", {{0, 0}, {100, 40}}, {leftScreen}, {{0, 79}, false}},
        {"all but the last corner", {{0, 0}, {99, 80}}, {leftScreen}, {{99, 0}, false}},
        {"all but the last row", {{0, 0}, {100, 79}}, {leftScreen}, {{0, 79}, false}},
        {"the whole first screen", leftScreen, {leftScreen, rightScreen}, {{100, 10}, false}},
        {"the whole of both", {{0, 0}, {160, 80}}, {leftScreen, rightScreen}, {{0, 0}, true}},
        {"the whole of one", leftScreen, {leftScreen}, {{0, 0}, true}},
        {"the whole of one elsewhere", rightScreen, {rightScreen}, {{100, 10}, true}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(probePlace(c.area, c.screens), c.place);
    }
}

TEST(ProbePlace, IsNowhereWithoutScreens) {
    EXPECT_FALSE(probePlace(leftScreen, {}).has_value());
}

} // namespace snapvane
