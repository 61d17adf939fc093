#include "selection/LoupePixels.h"

#include "base/SystemColors.h"
#include "selection/SnapshotFixture.h"

#include <gmock/gmock.h>

#include <csignal>
#include <limits>
#include <numeric>

#include <sys/mman.h>

namespace snapvane {

namespace {

using LoupePixels::around;
using LoupePixels::Cells;
using LoupePixels::reach;
using LoupePixels::readPixel;
using LoupePixels::side;
using ::testing::KilledBySignal;
using ::testing::ValuesIn;

/// Bytes that count up from 1, seen as a picture.
struct CountingBytes {
    CountingBytes(PixelSize size, qsizetype bytesPerLine, QImage::Format format)
        : bytes(static_cast<std::size_t>(bytesPerLine * size.height)),
          image(bytes.data(), size.width, size.height, bytesPerLine, format) {
        std::iota(bytes.begin(), bytes.end(), uchar{1});
    }

    std::vector<uchar> bytes;
    QImage image;
};

struct FormatCase {
    const char* what;
    QImage::Format format;
    qsizetype bytesPerLine;
    /// Of the pixel in column 1 of row 2, in a picture of 3 × 4 pixels.
    QRgb color;

    friend void PrintTo(const FormatCase& example, std::ostream* stream) {
        *stream << example.what;
    }
};

class ReadPixel : public ::testing::TestWithParam<FormatCase> {};

TEST_P(ReadPixel, TakesTheFirstBytesOfThePixel) {
    const FormatCase& c = GetParam();
    const CountingBytes counting({3, 4}, c.bytesPerLine, c.format);
    ASSERT_FALSE(counting.image.isNull());
    EXPECT_EQ(readPixel(counting.image, 1, 2), c.color);
}

const FormatCase formatCases[] = {
    {"3 bytes", QImage::Format_RGB888, 9, qRgba(22, 23, 24, 255)},
    {"3 bytes, padded rows", QImage::Format_RGB888, 12, qRgba(28, 29, 30, 255)},
    {"3 bytes, another meaning", QImage::Format_BGR888, 12, qRgba(28, 29, 30, 255)},
    {"4 bytes", QImage::Format_RGBA8888, 12, qRgba(29, 30, 31, 32)},
    {"4 bytes, padded rows", QImage::Format_RGBA8888, 20, qRgba(45, 46, 47, 48)},
    {"4 bytes, premultiplied", QImage::Format_RGBA8888_Premultiplied, 12, qRgba(29, 30, 31, 32)},
    {"4 bytes, another meaning", QImage::Format_ARGB32, 12, qRgba(29, 30, 31, 32)},
    {"4 bytes, the last one unused", QImage::Format_RGBX8888, 12, qRgba(29, 30, 31, 32)},
    {"8 bytes", QImage::Format_RGBA64, 24, qRgba(57, 58, 59, 60)},
    {"8 bytes, padded rows", QImage::Format_RGBA64, 32, qRgba(73, 74, 75, 76)},
};

INSTANTIATE_TEST_SUITE_P(Formats, ReadPixel, ValuesIn(formatCases));

TEST(ReadPixelOnce, ReadsEveryPixelFromItsOwnPlace) {
    const QImage image = testing::snapshotImage({23, 17}, 200);
    for (int y = 0; y < 17; ++y) {
        for (int x = 0; x < 23; ++x) {
            ASSERT_EQ(readPixel(image, x, y), testing::snapshotColor(x, y, 200)) << x << ',' << y;
        }
    }
}

/// An offset beyond 2 GB does not fit an int. Only one row of the picture is looked at, so that the
/// others need no memory.
TEST(ReadPixelOnce, RowsFarDownAreFound) {
    constexpr qsizetype bytesPerLine = qsizetype{1} << 28;
    constexpr int rows = 10;
    void* memory = mmap(nullptr, std::size_t{bytesPerLine} * rows, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* bytes = static_cast<uchar*>(memory);
    const QImage image(bytes, 1, rows, bytesPerLine, QImage::Format_RGBA8888);
    ASSERT_FALSE(image.isNull());
    bytes[9 * bytesPerLine] = 77;
    EXPECT_EQ(readPixel(image, 0, 9), qRgba(77, 0, 0, 0));
    munmap(memory, std::size_t{bytesPerLine} * rows);
}

TEST(ReadPixelOnce, WithoutColoursThereIsGray) {
    const QRgb gray = SystemColors::gray().rgb();
    EXPECT_EQ(readPixel(QImage(), 0, 0), gray);
    for (const QImage::Format format :
         {QImage::Format_Mono, QImage::Format_MonoLSB, QImage::Format_Indexed8,
          QImage::Format_Grayscale8, QImage::Format_Alpha8, QImage::Format_RGB16,
          QImage::Format_RGB555, QImage::Format_Grayscale16}) {
        SCOPED_TRACE(format);
        QImage image(9, 9, format);
        image.fill(0);
        EXPECT_EQ(readPixel(image, 8, 8), gray);
    }
}

/// A place on a snapshot of 60 × 50 pixels and what is seen of it.
struct PlaceCase {
    const char* what;
    PixelPoint pixel;
    int firstColumn = 0;
    int endColumn = side;

    friend void PrintTo(const PlaceCase& example, std::ostream* stream) { *stream << example.what; }
};

const PlaceCase placeCases[] = {
    {"in the middle", {30, 25}},
    {"all columns on the left", {7, 25}},
    {"one column off on the left", {6, 25}, 1},
    {"left edge", {0, 25}, 7},
    {"all columns on the right", {52, 25}},
    {"one column off on the right", {53, 25}, 0, 14},
    {"right edge", {59, 25}, 0, 8},
    {"upper edge", {30, 0}},
    {"lower edge", {30, 49}},
    {"upper left corner", {0, 0}, 7},
    {"upper right corner", {59, 0}, 0, 8},
    {"lower left corner", {0, 49}, 7},
    {"lower right corner", {59, 49}, 0, 8},
    {"just off on the left", {-1, 25}, 8},
    {"last column still seen from the left", {-7, 25}, 14},
    {"nothing seen from the left", {-8, 25}, 15},
    {"far left", {-100'000, 25}, 15},
    {"just off on the right", {60, 25}, 0, 7},
    {"last column still seen from the right", {66, 25}, 0, 1},
    {"nothing seen from the right", {67, 25}, 0, 0},
    {"far right", {100'000, 25}, 0, 0},
    {"above", {30, -9}},
    {"far above", {30, -100'000}},
    {"below", {30, 60}},
    {"far below", {30, 100'000}},
    {"off two sides", {-3, -20}, 10},
};

class LoupeCells : public ::testing::TestWithParam<PlaceCase> {};

TEST_P(LoupeCells, RepeatEdgeRowsAndLeaveOutColumns) {
    const PlaceCase& c = GetParam();
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        SCOPED_TRACE(scale);
        const DisplaySnapshot snapshot = testing::snapshotOf({60, 50}, scale);
        const Cells cells = around(snapshot, testing::localPlace(c.pixel, snapshot));
        ASSERT_EQ(std::max(0, cells.endColumn - cells.firstColumn),
                  std::max(0, c.endColumn - c.firstColumn));
        if (c.endColumn > c.firstColumn) {
            EXPECT_EQ(cells.firstColumn, c.firstColumn);
        }
        for (int row = 0; row < side; ++row) {
            const int y = std::clamp(c.pixel.y + row - reach, 0, 49);
            for (int column = c.firstColumn; column < c.endColumn; ++column) {
                const int x = c.pixel.x + column - reach;
                ASSERT_EQ(cells.at(column, row), testing::snapshotColor(x, y))
                    << column << ',' << row;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Places, LoupeCells, ValuesIn(placeCases));

TEST(LoupeCellsOnce, ThePlaceGoesToTheNearestPixel) {
    const DisplaySnapshot snapshot = testing::snapshotOf({60, 50}, 2);
    // 20.5 and 10.5 pixels from the lower-left corner.
    EXPECT_EQ(around(snapshot, {10.25, 5.25}).at(reach, reach), testing::snapshotColor(21, 38));
    EXPECT_EQ(around(snapshot, {10.24, 5.24}).at(reach, reach), testing::snapshotColor(20, 39));
}

TEST(LoupeCellsOnce, AreUpright) {
    const DisplaySnapshot snapshot = testing::snapshotOf({60, 50}, 1);
    const Cells cells = around(snapshot, {30, 20});
    // What is further up on the screen is further up in the loupe.
    EXPECT_EQ(cells.at(reach, 0), testing::snapshotColor(30, 29 - reach));
    EXPECT_EQ(cells.at(reach, side - 1), testing::snapshotColor(30, 29 + reach));
    EXPECT_EQ(cells.at(0, reach), testing::snapshotColor(30 - reach, 29));
}

TEST(LoupeCellsOnce, AreFewerInAPictureThatIsSmallerThanTheLoupe) {
    const DisplaySnapshot snapshot = testing::snapshotOf({3, 2}, 1);
    const Cells cells = around(snapshot, {1, 1});
    EXPECT_EQ(cells.firstColumn, 6);
    EXPECT_EQ(cells.endColumn, 9);
    EXPECT_EQ(cells.at(6, reach), testing::snapshotColor(0, 0));
    EXPECT_EQ(cells.at(8, 0), testing::snapshotColor(2, 0));
    EXPECT_EQ(cells.at(8, side - 1), testing::snapshotColor(2, 1));
}

TEST(LoupeCellsOnce, AreNoneWithoutAPicture) {
    for (const GlobalPoint place : {GlobalPoint{0, 0}, {-5, 3}, {700, 800}, {-900, -900}}) {
        const Cells cells = around({{{0, 0}, {60, 50}}, 1, QImage()}, place);
        EXPECT_LE(cells.endColumn, cells.firstColumn);
    }
}

TEST(LoupeCellsOnce, AreGrayWhereThePictureHasNoColours) {
    QImage image(60, 50, QImage::Format_Grayscale8);
    image.fill(200);
    const Cells cells = around({{{0, 0}, {60, 50}}, 1, image}, {0, 0});
    EXPECT_EQ(cells.firstColumn, 7);
    for (int row = 0; row < side; ++row) {
        EXPECT_EQ(cells.at(reach, row), SystemColors::gray().rgb());
    }
}

TEST(LoupeCellsOnce, ArePremultiplied) {
    DisplaySnapshot snapshot = testing::snapshotOf({60, 50}, 1, 51);
    const Cells cells = around(snapshot, {30, 20});
    EXPECT_EQ(cells.at(reach, reach), qPremultiply(testing::snapshotColor(30, 29, 51)));
    EXPECT_EQ(qAlpha(cells.at(reach, reach)), 51);
    snapshot = testing::snapshotOf({60, 50}, 1, 0);
    EXPECT_EQ(around(snapshot, {30, 20}).at(reach, reach), 0U);
}

/// Places as far away as whole pixels can be counted.
TEST(LoupeCellsOnce, ThereIsNothingAtTheEndsOfTheWorld) {
    const DisplaySnapshot snapshot = testing::snapshotOf({60, 50}, 1);
    constexpr double last = std::numeric_limits<int>::max();
    constexpr double first = std::numeric_limits<int>::min();
    for (const double x : {first, last}) {
        for (const double y : {first, 20.0, last}) {
            const Cells cells = around(snapshot, {x, y});
            EXPECT_LE(cells.endColumn, cells.firstColumn) << x << ", " << y;
        }
    }
    EXPECT_EQ(around(snapshot, {30, last}).at(reach, reach), testing::snapshotColor(30, 0));
    EXPECT_EQ(around(snapshot, {30, first}).at(reach, reach), testing::snapshotColor(30, 49));
}

TEST(LoupeCellsDeathTest, ThePlaceMustBeFinite) {
    const DisplaySnapshot snapshot = testing::snapshotOf({60, 50}, 1);
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), infinite, -infinite}) {
        EXPECT_EXIT(around(snapshot, {value, 0}), KilledBySignal(SIGABRT), "not finite");
        EXPECT_EXIT(around(snapshot, {0, value}), KilledBySignal(SIGABRT), "not finite");
    }
    DisplaySnapshot odd = snapshot;
    odd.backingScale = infinite;
    EXPECT_EXIT(around(odd, {1, 1}), KilledBySignal(SIGABRT), "not finite");
}

} // namespace

} // namespace snapvane
