#include "platform/x11/ReservedEdges.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

using x11::Strut;

/// Two screens side by side, the right one lower and shorter.
constexpr PixelSize root = {3200, 1100};
const DeviceRect leftScreen = {{0, 0}, {1920, 1080}};
const DeviceRect rightScreen = {{1920, 76}, {1280, 1024}};

Strut strut(Strut::Field edge, std::uint32_t reach, std::uint32_t from, std::uint32_t to) {
    // The span's fields come in pairs, in the order of the edges.
    const auto start = static_cast<std::size_t>(Strut::LeftStart) + 2U * edge;
    Strut result;
    result.fields[edge] = reach;
    result.fields[start] = from;
    result.fields[start + 1] = to;
    return result;
}

struct Case {
    const char* name = nullptr;
    Strut strut;
    DeviceRect screen;
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
};

const Case cases[] = {
    {"top bar", strut(Strut::Top, 30, 0, 1919), leftScreen, 0, 0, 30, 0},
    {"its neighbour", strut(Strut::Top, 30, 0, 1919), rightScreen, 0, 0, 0, 0},
    {"span touching by one pixel", strut(Strut::Top, 100, 0, 1920), rightScreen, 0, 0, 24, 0},
    {"bar over the lower screen", strut(Strut::Top, 100, 1920, 3199), rightScreen, 0, 0, 24, 0},
    {"bar in the gap above it", strut(Strut::Top, 76, 1920, 3199), rightScreen, 0, 0, 0, 0},
    {"bottom bar", strut(Strut::Bottom, 40, 1920, 3199), rightScreen, 0, 0, 0, 40},
    {"bottom bar of the higher screen", strut(Strut::Bottom, 60, 0, 1919), leftScreen, 0, 0, 0, 40},
    {"left dock", strut(Strut::Left, 64, 0, 1079), leftScreen, 64, 0, 0, 0},
    {"left dock in between", strut(Strut::Left, 1984, 76, 1099), rightScreen, 64, 0, 0, 0},
    {"the same on the screen it crosses", strut(Strut::Left, 1984, 76, 1099), leftScreen, 0, 0, 0,
     0},
    {"right dock", strut(Strut::Right, 50, 76, 1099), rightScreen, 0, 50, 0, 0},
    {"right dock in between", strut(Strut::Right, 1330, 0, 1079), leftScreen, 0, 50, 0, 0},
    {"right dock beside the rows", strut(Strut::Right, 50, 0, 75), rightScreen, 0, 0, 0, 0},
    {"as wide as the screen", strut(Strut::Left, 1920, 0, 1079), leftScreen, 0, 0, 0, 0},
    {"one pixel narrower", strut(Strut::Left, 1919, 0, 1079), leftScreen, 1919, 0, 0, 0},
    {"nothing", {}, leftScreen, 0, 0, 0, 0},
    {"absurd", strut(Strut::Top, 4294967295U, 0, 4294967295U), leftScreen, 0, 0, 0, 0},
};

} // namespace

TEST(ReservedEdges, TakeFromTheScreenThatTheStrutLiesOn) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto reserved = x11::reservedBy(c.strut, c.screen, root);
        EXPECT_EQ(reserved.left, c.left);
        EXPECT_EQ(reserved.right, c.right);
        EXPECT_EQ(reserved.top, c.top);
        EXPECT_EQ(reserved.bottom, c.bottom);
    }
}

} // namespace snapvane
