// Where the guide lines and the loupe go on a screen, and which pixel the loupe is about.

#include "platform/ScreenMapping.h"

#include "Layouts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <random>

namespace snapvane {

namespace {

using ScreenMapping::layOut;
using ScreenMapping::linesThrough;
using ScreenMapping::picturePixel;
using ScreenMapping::pixelSize;
using ScreenMapping::upperLeftPixel;
using ::testing::ValuesIn;

constexpr double infinite = std::numeric_limits<double>::infinity();

Screen screenOf(const DeviceRect& frame, double scale) {
    return layOut({nativeScreen(1, frame, scale)}).front();
}

struct LinesCase {
    const char* what;
    double scale;
    GlobalPoint local;
    /// First column and row of the lines and their thickness.
    int column;
    int row;
    int thickness;

    friend void PrintTo(const LinesCase& example, std::ostream* stream) { *stream << example.what; }
};

class CrossingLines : public ::testing::TestWithParam<LinesCase> {};

// On a screen of 600 × 420 pixels.
TEST_P(CrossingLines, CrossAtThePlace) {
    const LinesCase& c = GetParam();
    const auto lines = linesThrough(screenOf({{37, -91}, {600, 420}}, c.scale), c.local, 1);
    EXPECT_EQ(lines.vertical.toQRect(), QRect(c.column, 0, c.thickness, 420));
    EXPECT_EQ(lines.horizontal.toQRect(), QRect(0, c.row, 600, c.thickness));
}

const LinesCase linesCases[] = {
    {"the pixel itself at 1", 1, {100, 100}, 100, 319, 1},
    {"lower-left corner at 1", 1, {0, 0}, 0, 419, 1},
    {"last column and row at 1", 1, {599, 419}, 599, 0, 1},
    {"on the right and upper border at 1", 1, {600, 420}, 599, 0, 1},
    {"just less than a half goes down at 1", 1, {100.49, 100.49}, 100, 319, 1},
    {"a half goes up at 1", 1, {100.5, 100.5}, 101, 318, 1},
    {"left of and below the screen at 1", 1, {-50, -50}, 0, 419, 1},
    {"right of and above the screen at 1", 1, {900, 900}, 599, 0, 1},
    {"at 1.25", 1.25, {100, 100}, 125, 294, 1},
    {"lower-left corner at 1.25", 1.25, {0, 0}, 0, 419, 1},
    {"on the far border at 1.25", 1.25, {480, 336}, 599, 0, 1},
    {"at 1.5", 1.5, {100, 100}, 149, 269, 2},
    {"lower-left corner at 1.5", 1.5, {0, 0}, 0, 419, 1},
    {"on the far border at 1.5", 1.5, {400, 280}, 599, 0, 1},
    {"at 1.75", 1.75, {100, 100}, 174, 244, 2},
    {"at 2", 2, {100, 100}, 199, 219, 2},
    {"snapped to pixel 201 at 2", 2, {100.3, 100.3}, 200, 218, 2},
    {"a half goes up at 2", 2, {100.25, 100.25}, 200, 218, 2},
    {"just less than a half goes down at 2", 2, {100.24, 100.24}, 199, 219, 2},
    {"lower-left corner at 2", 2, {0, 0}, 0, 419, 1},
    {"last pixel at 2", 2, {299.5, 209.5}, 598, 0, 2},
    {"on the far border at 2", 2, {300, 210}, 599, 0, 1},
    {"at 3", 3, {100, 100}, 299, 118, 3},
    {"lower-left corner at 3", 3, {0, 0}, 0, 418, 2},
};

INSTANTIATE_TEST_SUITE_P(Table, CrossingLines, ValuesIn(linesCases));

class LineThickness : public ::testing::TestWithParam<double> {};

TEST_P(LineThickness, IsTheNearestWholeNumberOfPixels) {
    const double scale = GetParam();
    const Screen screen = screenOf({{0, 0}, {600, 420}}, scale);
    const int expected = static_cast<int>(std::round(scale));
    for (int pixel = 20; pixel < 60; ++pixel) {
        const double place = pixel / scale;
        const auto lines = linesThrough(screen, {place, place}, 1);
        ASSERT_EQ(lines.vertical.width, expected) << pixel;
        ASSERT_EQ(lines.horizontal.height, expected) << pixel;
    }
}

TEST_P(LineThickness, IsSpreadEvenlyAroundThePlace) {
    const double scale = GetParam();
    const Screen screen = screenOf({{0, 0}, {600, 420}}, scale);
    const auto lines = linesThrough(screen, {100 / scale, 100 / scale}, 1);
    const double middle = lines.vertical.x + lines.vertical.width / 2.0;
    EXPECT_GE(middle, 100);
    EXPECT_LE(middle, 100.5);
    const double fromBelow = 420 - (lines.horizontal.y + lines.horizontal.height / 2.0);
    EXPECT_EQ(fromBelow, middle);
}

INSTANTIATE_TEST_SUITE_P(Scales, LineThickness,
                         ::testing::Values(1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 2.5, 3.0, 4.0));

TEST(CrossingLinesProperties, AtScale1TheyCrossInThePointersPixel) {
    std::mt19937 random(77);
    for (int run = 0; run < 20'000; ++run) {
        const auto number = [&random](int from, int to) {
            return std::uniform_int_distribution(from, to)(random);
        };
        const DeviceRect frame = {{number(-3000, 3000), number(-3000, 3000)},
                                  {number(1, 3000), number(1, 2000)}};
        const ScreenList screens = {screenOf(frame, 1)};
        const PixelPoint pixel = {number(0, frame.size.width - 1),
                                  number(0, frame.size.height - 1)};
        const GlobalPoint inside = ScreenMapping::pointerPlace(screens, {frame.origin.x + pixel.x,
                                                                         frame.origin.y + pixel.y})
                                       .inside;
        const GlobalRect& global = screens.front().frame;
        const auto lines =
            linesThrough(screens.front(), {inside.x - global.minX(), inside.y - global.minY()}, 1);
        ASSERT_EQ(lines.vertical, (PixelRect{pixel.x, 0, 1, frame.size.height})) << run;
        ASSERT_EQ(lines.horizontal, (PixelRect{0, pixel.y, frame.size.width, 1})) << run;
    }
}

TEST(CrossingLinesProperties, TheyStayInsideTheirScreenAndSpanIt) {
    std::mt19937 random(78);
    const auto real = [&random](double from, double to) {
        return std::uniform_real_distribution(from, to)(random);
    };
    for (int run = 0; run < 20'000; ++run) {
        const double scale = real(0.5, 4);
        const double thickness = real(0.1, 5);
        const PixelSize size = {static_cast<int>(real(1, 500)), static_cast<int>(real(1, 500))};
        const Screen screen = screenOf({{11, 12}, size}, scale);
        const auto lines = linesThrough(screen, {real(-600, 1100), real(-600, 1100)}, thickness);
        ASSERT_EQ(lines.vertical.y, 0);
        ASSERT_EQ(lines.vertical.height, size.height);
        ASSERT_EQ(lines.horizontal.x, 0);
        ASSERT_EQ(lines.horizontal.width, size.width);
        ASSERT_GE(lines.vertical.x, 0) << run;
        ASSERT_GE(lines.vertical.width, 1) << run;
        ASSERT_LE(lines.vertical.x + lines.vertical.width, size.width) << run;
        ASSERT_GE(lines.horizontal.y, 0) << run;
        ASSERT_GE(lines.horizontal.height, 1) << run;
        ASSERT_LE(lines.horizontal.y + lines.horizontal.height, size.height) << run;
        ASSERT_LE(lines.vertical.width, std::max(1.0, scale * thickness + 1)) << run;
    }
}

TEST(CrossingLines, HaveTheThicknessThatWasAskedFor) {
    const Screen screen = screenOf({{0, 0}, {600, 420}}, 1);
    for (int thickness = 1; thickness <= 9; ++thickness) {
        const auto lines = linesThrough(screen, {100, 100}, thickness);
        EXPECT_EQ(lines.vertical.width, thickness);
        EXPECT_EQ(lines.horizontal.height, thickness);
    }
    // No line is too thin to be seen.
    EXPECT_EQ(linesThrough(screen, {100, 100}, 0.1).vertical.width, 1);
}

/// What the display server's space is does not matter: the lines are in the screen's own pixels.
TEST(CrossingLines, AreTheSameWhereverTheScreenStands) {
    const ScreenList desktop = layOut({nativeScreen(1, {{0, 500}, {800, 600}}, 1),
                                       nativeScreen(2, {{800, 0}, {640, 480}}, 1.5),
                                       nativeScreen(3, {{-640, 1000}, {640, 480}}, 1.5),
                                       nativeScreen(4, {{10, 1100}, {640, 480}}, 1.5)});
    const auto expected = linesThrough(screenOf({{0, 0}, {640, 480}}, 1.5), {33.4, 77.7}, 1);
    for (std::size_t i = 1; i < desktop.size(); ++i) {
        EXPECT_EQ(linesThrough(desktop[i], {33.4, 77.7}, 1), expected) << i;
    }
}

TEST(CrossingLinesDeathTest, ThePlaceMustBeFinite) {
    const Screen screen = screenOf({{0, 0}, {600, 420}}, 1);
    EXPECT_EXIT(linesThrough(screen, {NAN, 0}, 1), ::testing::KilledBySignal(SIGABRT),
                "not finite");
    EXPECT_EXIT(linesThrough(screen, {0, infinite}, 1), ::testing::KilledBySignal(SIGABRT),
                "not finite");
}

TEST(PixelSizes, AreRoundedAndNeverNothing) {
    struct Case {
        GlobalSize size;
        double scale = 1;
        PixelSize pixels;
    };
    const Case cases[] = {
        {{160, 164}, 1, {160, 164}},   {{160, 164}, 1.25, {200, 205}},
        {{160, 164}, 1.5, {240, 246}}, {{160, 164}, 1.75, {280, 287}},
        {{160, 164}, 2, {320, 328}},   {{160, 164}, 3, {480, 492}},
        {{160, 164}, 1.1, {176, 180}}, {{160, 164}, 1.33, {213, 218}},
        {{10.5, 10.49}, 1, {11, 10}},  {{1, 3}, 1.5, {2, 5}},
        {{0, 0}, 2, {1, 1}},           {{0.2, 0.24}, 2, {1, 1}},
        {{-4, -8}, 1, {1, 1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message()
                     << c.size.width << " x " << c.size.height << " at " << c.scale);
        EXPECT_EQ(pixelSize(c.size, c.scale).width, c.pixels.width);
        EXPECT_EQ(pixelSize(c.size, c.scale).height, c.pixels.height);
    }
}

struct PlaceCase {
    const char* what;
    DeviceRect frame;
    double scale;
    /// From the lower-left corner of the screen; points.
    GlobalPoint offset;
    PixelSize picture;
    PixelPoint expected;

    friend void PrintTo(const PlaceCase& example, std::ostream* stream) { *stream << example.what; }
};

class PicturePlace : public ::testing::TestWithParam<PlaceCase> {};

TEST_P(PicturePlace, IsItsUpperLeftPixel) {
    const PlaceCase& c = GetParam();
    // The primary stands elsewhere, so that the screen's frame is not at the origin.
    const Screen screen =
        layOut({nativeScreen(9, {{5000, 5000}, {300, 200}}), nativeScreen(1, c.frame, c.scale)})[1];
    const GlobalPoint origin = {screen.frame.minX() + c.offset.x, screen.frame.minY() + c.offset.y};
    EXPECT_EQ(upperLeftPixel(screen, origin, c.picture).x, c.expected.x);
    EXPECT_EQ(upperLeftPixel(screen, origin, c.picture).y, c.expected.y);
}

const PlaceCase placeCases[] = {
    {"the lower-left corner", {{0, 0}, {600, 420}}, 1, {0, 0}, {160, 164}, {0, 256}},
    {"right and up", {{0, 0}, {600, 420}}, 1, {30, 40}, {160, 164}, {30, 216}},
    {"up to the top", {{0, 0}, {600, 420}}, 1, {440, 256}, {160, 164}, {440, 0}},
    {"partly above", {{0, 0}, {600, 420}}, 1, {0, 300}, {160, 164}, {0, -44}},
    {"partly left and below", {{0, 0}, {600, 420}}, 1, {-10, -20}, {160, 164}, {-10, 276}},
    {"half points", {{0, 0}, {600, 420}}, 1, {30.5, 40.5}, {160, 164}, {31, 216}},
    {"another origin", {{-600, 77}, {600, 420}}, 1, {30, 40}, {160, 164}, {30, 216}},
    {"at 1.5", {{0, 0}, {600, 420}}, 1.5, {30, 40}, {240, 246}, {45, 114}},
    {"at 1.5, an odd point", {{0, 0}, {600, 420}}, 1.5, {31, 40}, {240, 246}, {47, 114}},
    {"at 2", {{-600, 77}, {600, 420}}, 2, {30.5, 40.5}, {320, 328}, {61, 11}},
};

INSTANTIATE_TEST_SUITE_P(Table, PicturePlace, ValuesIn(placeCases));

TEST(PicturePixel, CountsRowsFromThePicturesTop) {
    struct Case {
        GlobalPoint local;
        double scale = 1;
        PixelPoint expected;
    };
    // In a picture 420 pixels high.
    const Case cases[] = {
        {{0, 0}, 1, {0, 419}},           {{599, 419}, 1, {599, 0}},
        {{100, 100}, 1, {100, 319}},     {{600, 420}, 1, {600, -1}},
        {{-1, -1}, 1, {-1, 420}},        {{100.49, 100.49}, 1, {100, 319}},
        {{100.5, 100.5}, 1, {101, 318}}, {{-0.5, -0.5}, 1, {-1, 420}},
        {{100, 100}, 1.25, {125, 294}},  {{100, 100}, 1.5, {150, 269}},
        {{100, 100}, 1.75, {175, 244}},  {{100.3, 100.3}, 2, {201, 218}},
        {{100, 100}, 3, {300, 119}},     {{-700, 5000}, 2, {-1400, -9581}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.local.x << ", " << c.local.y << " at " << c.scale);
        EXPECT_EQ(picturePixel(c.local, c.scale, 420).x, c.expected.x);
        EXPECT_EQ(picturePixel(c.local, c.scale, 420).y, c.expected.y);
    }
}

/// However awkward the scale: the loupe is about the very pixel that the pointer is on.
TEST(PicturePixelProperties, IsThePixelUnderThePointer) {
    std::mt19937 random(79);
    const auto number = [&random](int from, int to) {
        return std::uniform_int_distribution(from, to)(random);
    };
    const double scales[] = {1, 1.1, 1.25, 1.33, 1.5, 1.75, 2, 2.5, 3};
    for (int run = 0; run < 20'000; ++run) {
        const DeviceRect primary = {{number(-3000, 3000), number(-3000, 3000)}, {801, 601}};
        const DeviceRect frame = {{primary.origin.x + 801, primary.origin.y + number(-500, 500)},
                                  {number(1, 3000), number(1, 2000)}};
        const double scale = scales[number(0, 8)];
        const ScreenList screens =
            layOut({nativeScreen(1, primary, scales[number(0, 8)]), nativeScreen(2, frame, scale)});
        const PixelPoint pixel = {number(0, frame.size.width - 1),
                                  number(0, frame.size.height - 1)};
        const GlobalPoint inside = ScreenMapping::pointerPlace(screens, {frame.origin.x + pixel.x,
                                                                         frame.origin.y + pixel.y})
                                       .inside;
        const GlobalRect& global = screens[1].frame;
        ASSERT_EQ(picturePixel({inside.x - global.minX(), inside.y - global.minY()}, scale,
                               frame.size.height),
                  pixel)
            << run << ", scale " << scale;
    }
}

TEST(PicturePixelDeathTest, ThePlaceMustBeFinite) {
    for (const double value : {static_cast<double>(NAN), infinite, -infinite}) {
        EXPECT_EXIT(picturePixel({value, 0}, 1, 420), ::testing::KilledBySignal(SIGABRT),
                    "not finite");
        EXPECT_EXIT(picturePixel({0, value}, 1, 420), ::testing::KilledBySignal(SIGABRT),
                    "not finite");
    }
}

} // namespace

} // namespace snapvane
