#include "Layouts.h"
#include "platform/x11/X11Screens.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace snapvane {

namespace {

x11::Monitor monitor(std::uint32_t id, DevicePoint origin, bool primary = false) {
    return {nativeScreen(id, {origin, {100, 100}}), primary};
}

std::vector<std::uint32_t> orderOf(std::vector<x11::Monitor> monitors) {
    std::vector<std::uint32_t> ids;
    for (const auto& screen : x11::primaryFirst(std::move(monitors))) {
        ids.push_back(screen.id);
    }
    return ids;
}

} // namespace

TEST(PrimaryFirst, PutsTheMarkedMonitorFirstAndKeepsTheOthersOrder) {
    using ::testing::ElementsAre;
    EXPECT_THAT(orderOf({monitor(1, {0, 0}), monitor(2, {100, 0}), monitor(3, {200, 0}, true),
                         monitor(4, {300, 0})}),
                ElementsAre(3, 1, 2, 4));
    EXPECT_THAT(orderOf({monitor(1, {100, 0}, true), monitor(2, {0, 0})}), ElementsAre(1, 2));
}

TEST(PrimaryFirst, TakesTheMonitorInTheCornerWithoutAMarkedOne) {
    using ::testing::ElementsAre;
    EXPECT_THAT(orderOf({monitor(1, {100, 0}), monitor(2, {200, 0}), monitor(3, {0, 0})}),
                ElementsAre(3, 1, 2));
}

TEST(PrimaryFirst, LeavesMirrorsOut) {
    using ::testing::ElementsAre;
    EXPECT_THAT(orderOf({monitor(1, {0, 0}), monitor(2, {0, 0}, true), monitor(3, {100, 0})}),
                ElementsAre(2, 3));
    const x11::Monitor small = {nativeScreen(4, {{20, 20}, {50, 50}}), true};
    EXPECT_THAT(orderOf({monitor(1, {0, 0}), small}), ElementsAre(1)) << "a part of another one";
    const x11::Monitor overlapping = {nativeScreen(5, {{50, 0}, {100, 100}}), false};
    EXPECT_THAT(orderOf({monitor(1, {0, 0}), overlapping}), ElementsAre(1, 5));
}

TEST(PrimaryFirst, LeavesTheOrderWithoutEither) {
    using ::testing::ElementsAre;
    EXPECT_THAT(orderOf({monitor(1, {100, 0}), monitor(2, {0, 50})}), ElementsAre(1, 2));
    EXPECT_THAT(orderOf({}), ::testing::IsEmpty());
}

} // namespace snapvane
