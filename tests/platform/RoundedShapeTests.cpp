#include "platform/x11/RoundedShape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace snapvane {

namespace {

using Picture = std::vector<std::string>;

/// The shape as rows of '#' for what stays and '.' for what is cut off; 'X' where blocks overlap.
Picture pictureOf(PixelSize size, double radius, x11::ShapeEdge edge = x11::ShapeEdge::Centres) {
    Picture picture(static_cast<std::size_t>(size.height),
                    std::string(static_cast<std::size_t>(size.width), '.'));
    for (const xcb_rectangle_t& block : x11::roundedRows(size, radius, edge)) {
        for (int y = block.y; y < block.y + block.height; ++y) {
            for (int x = block.x; x < block.x + block.width; ++x) {
                char& pixel =
                    picture.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x));
                pixel = pixel == '.' ? '#' : 'X';
            }
        }
    }
    return picture;
}

struct ShapeCase {
    const char* name;
    PixelSize size;
    double radius;
    Picture picture;

    friend void PrintTo(const ShapeCase& example, std::ostream* stream) { *stream << example.name; }
};

const ShapeCase shapes[] = {
    {"NoRadius", {3, 2}, 0, {"###", "###"}},
    {"NegativeRadius", {3, 2}, -5, {"###", "###"}},
    {"RadiusOfOne", {4, 3}, 1, {"####", "####", "####"}},
    {"RadiusOfTwo", {6, 5}, 2, {".####.", "######", "######", "######", ".####."}},
    {"RadiusOfFour",
     {10, 9},
     4,
     {"..######..", ".########.", "##########", "##########", "##########", "##########",
      "##########", ".########.", "..######.."}},
    {"Circle", {6, 6}, 3, {".####.", "######", "######", "######", "######", ".####."}},
    {"RadiusBeyondTheHeight", {8, 4}, 100, {".######.", "########", "########", ".######."}},
    {"RadiusBeyondTheWidth", {4, 6}, 100, {".##.", "####", "####", "####", "####", ".##."}},
    {"OnePixel", {1, 1}, 10, {"#"}},
    {"OneRow", {5, 1}, 10, {"#####"}},
    {"OneColumn", {1, 3}, 10, {"#", "#", "#"}},
};

class RoundedShape : public ::testing::TestWithParam<ShapeCase> {};

} // namespace

TEST_P(RoundedShape, HasThesePixels) {
    EXPECT_EQ(pictureOf(GetParam().size, GetParam().radius), GetParam().picture);
}

INSTANTIATE_TEST_SUITE_P(Table, RoundedShape, ::testing::ValuesIn(shapes),
                         [](const auto& example) { return std::string(example.param.name); });

TEST(RoundedShapes, MayHoldEveryPixelThatTheyTouch) {
    constexpr auto touched = x11::ShapeEdge::Touched;
    EXPECT_EQ(pictureOf({6, 6}, 3, touched),
              Picture({"######", "######", "######", "######", "######", "######"}));
    EXPECT_EQ(pictureOf({10, 9}, 4, touched),
              Picture({".########.", "##########", "##########", "##########", "##########",
                       "##########", "##########", "##########", ".########."}));
    // None that a smooth edge paints on is missing, and none beyond it is there.
    constexpr double radius = 10;
    const Picture corner = pictureOf({40, 40}, radius, touched);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 10; ++x) {
            const double nearest = std::hypot(radius - (x + 1), radius - (y + 1));
            EXPECT_EQ(corner[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#',
                      nearest < radius)
                << x << ", " << y;
        }
    }
}

TEST(RoundedShapes, OfNothingAreEmpty) {
    EXPECT_TRUE(x11::roundedRows({0, 0}, 10, x11::ShapeEdge::Centres).empty());
    EXPECT_TRUE(x11::roundedRows({0, 10}, 10, x11::ShapeEdge::Centres).empty());
    EXPECT_TRUE(x11::roundedRows({10, 0}, 10, x11::ShapeEdge::Centres).empty());
}

TEST(RoundedShapes, ConsistOfThePixelsWhoseCentresAreInside) {
    for (const PixelSize size : {PixelSize{120, 32}, {121, 33}, {300, 64}, {32, 120}}) {
        for (const double radius : {3.0, 7.5, 10.0, 12.5, 15.0, 16.0}) {
            SCOPED_TRACE(::testing::Message() << size.width << 'x' << size.height << ' ' << radius);
            const Picture picture = pictureOf(size, radius);
            for (int y = 0; y < size.height; ++y) {
                for (int x = 0; x < size.width; ++x) {
                    const double right = size.width - radius;
                    const double lower = size.height - radius;
                    const double dx = std::max({radius - (x + 0.5), x + 0.5 - right, 0.0});
                    const double dy = std::max({radius - (y + 0.5), y + 0.5 - lower, 0.0});
                    const bool inside = dx * dx + dy * dy <= radius * radius;
                    const char pixel =
                        picture.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x));
                    ASSERT_EQ(pixel, inside ? '#' : '.') << x << ',' << y;
                }
            }
        }
    }
}

TEST(RoundedShapes, ConsistOfFewBlocksFromTopToBottom) {
    const auto rows = x11::roundedRows({400, 60}, 10, x11::ShapeEdge::Centres);
    EXPECT_LE(rows.size(), 15U);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].y, rows[i - 1].y + rows[i - 1].height);
    }
}

} // namespace snapvane
