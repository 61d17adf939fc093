// Where the loupe goes in relation to the pointer.

#include "selection/SelectionMagnifierController.h"

#include <gmock/gmock.h>

#include <random>

namespace snapvane {

namespace {

using ::testing::ValuesIn;

struct PlaceCase {
    const char* what;
    GlobalPoint pointer;
    GlobalRect visibleFrame;
    GlobalPoint expected;

    friend void PrintTo(const PlaceCase& example, std::ostream* stream) { *stream << example.what; }
};

class MagnifierPlace : public ::testing::TestWithParam<PlaceCase> {};

TEST_P(MagnifierPlace, IsNearThePointer) {
    const GlobalPoint origin =
        SelectionMagnifierController::origin(GetParam().pointer, GetParam().visibleFrame);
    EXPECT_EQ(origin.x, GetParam().expected.x);
    EXPECT_EQ(origin.y, GetParam().expected.y);
}

const GlobalRect desktop{{0, 0}, {1000, 800}};
const GlobalRect withDocks{{60, 30}, {900, 700}};
const GlobalRect elsewhere{{-1200, -500}, {1000, 800}};

// The loupe is 160 × 164 points: it flips where the pointer is less than 18 + 160 + 8 = 186 points
// from the right or 18 + 164 + 8 = 190 points from the top of the usable area.
const PlaceCase placeCases[] = {
    {"up and to the right", {300, 200}, desktop, {318, 218}},
    {"fractions stay", {300.25, 200.5}, desktop, {318.25, 218.5}},
    {"just room on the right", {814, 200}, desktop, {832, 218}},
    {"just no room on the right", {814.5, 200}, desktop, {636.5, 218}},
    {"right border", {999, 200}, desktop, {821, 218}},
    {"just room at the top", {300, 610}, desktop, {318, 628}},
    {"just no room at the top", {300, 610.5}, desktop, {318, 428.5}},
    {"top", {300, 799}, desktop, {318, 617}},
    {"upper right corner", {999, 799}, desktop, {821, 617}},
    {"lower-left corner", {0, 0}, desktop, {18, 18}},
    {"lower right corner", {999, 0}, desktop, {821, 18}},
    {"upper left corner", {0, 799}, desktop, {18, 617}},
    {"left of the usable area", {-200, 200}, desktop, {8, 218}},
    {"margin on the left exactly", {-10, 200}, desktop, {8, 218}},
    {"just beyond the margin", {-9.5, 200}, desktop, {8.5, 218}},
    {"below the usable area", {300, -50}, desktop, {318, 8}},
    {"margin below exactly", {300, -10}, desktop, {318, 8}},
    {"on a dock on the left", {0, 200}, withDocks, {68, 218}},
    {"on a dock below", {300, 0}, withDocks, {318, 38}},
    {"on a dock on the right", {990, 200}, withDocks, {812, 218}},
    {"on a dock above", {300, 780}, withDocks, {318, 598}},
    {"beside a dock, just room", {774, 200}, withDocks, {792, 218}},
    {"beside a dock, just no room", {774.5, 200}, withDocks, {596.5, 218}},
    {"below a dock, just room", {300, 540}, withDocks, {318, 558}},
    {"below a dock, just no room", {300, 540.5}, withDocks, {318, 358.5}},
    {"another origin", {-900, -300}, elsewhere, {-882, -282}},
    {"another origin, right", {-201, -300}, elsewhere, {-379, -282}},
    {"another origin, top", {-900, 299}, elsewhere, {-882, 117}},
    {"another origin, on its left", {-1300, -600}, elsewhere, {-1192, -492}},
    {"no room on either side", {80, 200}, {{0, 0}, {170, 800}}, {8, 218}},
    {"no room above or below", {300, 100}, {{0, 0}, {1000, 180}}, {318, 8}},
    {"flipped beyond the left margin", {180, 200}, {{0, 0}, {340, 800}}, {8, 218}},
    {"flipped to the margin exactly", {186, 200}, {{0, 0}, {340, 800}}, {8, 218}},
    {"flipped below the lower margin", {300, 185}, {{0, 0}, {1000, 360}}, {318, 8}},
    {"nowhere at all", {300, 200}, {}, {122, 18}},
    {"nowhere, at the origin", {0, 0}, {}, {8, 8}},
};

INSTANTIATE_TEST_SUITE_P(Table, MagnifierPlace, ValuesIn(placeCases));

/// Wherever there is room for it the loupe is all on the usable area and leaves the pointer free.
TEST(MagnifierPlaceProperties, NeitherLeavesTheScreenNorCoversThePointer) {
    std::mt19937 random(91);
    const auto real = [&random](double from, double to) {
        return std::uniform_real_distribution(from, to)(random);
    };
    const GlobalSize size = SelectionMagnifierView::size;
    for (int run = 0; run < 20'000; ++run) {
        const GlobalRect area = {{real(-3000, 3000), real(-3000, 3000)},
                                 {real(2 * 186, 4000), real(2 * 190, 3000)}};
        const GlobalPoint pointer = {real(area.minX(), area.maxX()),
                                     real(area.minY(), area.maxY())};
        const GlobalPoint origin = SelectionMagnifierController::origin(pointer, area);
        ASSERT_GE(origin.x, area.minX() + 8 - 1e-9) << run;
        ASSERT_GE(origin.y, area.minY() + 8 - 1e-9) << run;
        ASSERT_LE(origin.x + size.width, area.maxX() - 8 + 1e-9) << run;
        ASSERT_LE(origin.y + size.height, area.maxY() - 8 + 1e-9) << run;
        const GlobalRect loupe = {origin, size};
        ASSERT_FALSE(loupe.contains(pointer)) << run;
    }
}

} // namespace

} // namespace snapvane
