#include "selection/SizeLabel.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using ::testing::Values;

struct TextCase {
    GlobalSize size;
    const char16_t* text;

    friend void PrintTo(const TextCase& example, std::ostream* stream) {
        *stream << example.size.width << " x " << example.size.height;
    }
};

class SizeLabelText : public ::testing::TestWithParam<TextCase> {};

TEST_P(SizeLabelText, TellsRoundedPoints) {
    EXPECT_EQ(SizeLabel::text(GetParam().size).toStdString(),
              QString::fromUtf16(GetParam().text).toStdString());
}

INSTANTIATE_TEST_SUITE_P(Table, SizeLabelText,
                         Values(TextCase{{640, 480}, u"640 \u00D7 480 pt"},
                                TextCase{{99.5, 99.4}, u"100 \u00D7 99 pt"},
                                TextCase{{0.4, 0.5}, u"0 \u00D7 1 pt"},
                                TextCase{{1.5, 2.5}, u"2 \u00D7 3 pt"},
                                TextCase{{12345, 1000000}, u"12345 \u00D7 1000000 pt"}));

struct BoxCase {
    const char* what;
    GlobalRect selection;
    GlobalRect bounds;
    GlobalPoint expected;

    friend void PrintTo(const BoxCase& example, std::ostream* stream) { *stream << example.what; }
};

class SizeLabelBox : public ::testing::TestWithParam<BoxCase> {};

// A measured text of 84 × 16 makes a box of 100 × 24.
TEST_P(SizeLabelBox, IsPlaced) {
    const BoxCase& example = GetParam();
    EXPECT_EQ(SizeLabel::box(example.selection, {84, 16}, example.bounds),
              (GlobalRect{example.expected, {100, 24}}))
        << example.what;
}

const GlobalRect desktop{{0, 0}, {1000, 800}};
const GlobalRect offsetDesktop{{-500, -200}, {1000, 800}};

INSTANTIATE_TEST_SUITE_P(
    Table, SizeLabelBox,
    Values(BoxCase{"8 above, centred", {{400, 300}, {200, 100}}, desktop, {450, 408}},
           BoxCase{"reaches the top margin exactly", {{400, 660}, {200, 100}}, desktop, {450, 768}},
           BoxCase{"just beyond it: below", {{400, 660}, {200, 100.5}}, desktop, {450, 628}},
           BoxCase{"touches the top: below", {{400, 700}, {200, 100}}, desktop, {450, 668}},
           BoxCase{"from top to bottom: partly off", {{400, 0}, {200, 800}}, desktop, {450, -32}},
           BoxCase{"near the left", {{0, 300}, {20, 20}}, desktop, {8, 328}},
           BoxCase{"left margin exactly", {{48, 300}, {20, 20}}, desktop, {8, 328}},
           BoxCase{"near the right", {{980, 300}, {20, 20}}, desktop, {892, 328}},
           BoxCase{"right margin exactly", {{932, 300}, {20, 20}}, desktop, {892, 328}},
           BoxCase{"half points stay", {{400.5, 300.25}, {20, 20}}, desktop, {360.5, 328.25}},
           BoxCase{"negative size, same area", {{600, 400}, {-200, -100}}, desktop, {450, 408}},
           BoxCase{"no room: left wins", {{40, 300}, {20, 20}}, {{0, 0}, {110, 800}}, {8, 328}},
           BoxCase{"other origin, middle", {{0, 0}, {100, 100}}, offsetDesktop, {0, 108}},
           BoxCase{"other origin, left", {{-500, 0}, {20, 20}}, offsetDesktop, {-492, 28}},
           BoxCase{"other origin, right", {{480, 0}, {20, 20}}, offsetDesktop, {392, 28}},
           BoxCase{"other origin, top", {{0, 500}, {100, 100}}, offsetDesktop, {0, 468}},
           BoxCase{"other origin, no room",
                   {{-490, 0}, {20, 20}},
                   {{-500, -200}, {90, 800}},
                   {-492, 28}}));

/// A label as it is drawn for a selection of 640 × 480 points.
struct Drawn {
    explicit Drawn(double factor) : scale(factor) {
        const QString text = SizeLabel::text({640, 480});
        const GlobalSize measured = SizeLabel::textSize(text);
        size = {static_cast<int>(std::round((measured.width + 16) * scale)),
                static_cast<int>(std::round((measured.height + 8) * scale))};
        image = SizeLabel::render(text, size, scale);
    }
    QColor at(int x, int y) const { return image.pixelColor(x, y); }
    bool isBright(int x, int y) const { return qRed(image.pixel(x, y)) > 40; }

    double scale;
    PixelSize size;
    QImage image;
};

class SizeLabelPicture : public ::testing::TestWithParam<double> {};

TEST_P(SizeLabelPicture, HasTheSizeThatWasAskedFor) {
    const Drawn label(GetParam());
    EXPECT_EQ(label.image.width(), label.size.width);
    EXPECT_EQ(label.image.height(), label.size.height);
    EXPECT_EQ(label.image.format(), QImage::Format_ARGB32_Premultiplied);
}

TEST_P(SizeLabelPicture, HasRoundCorners) {
    const Drawn label(GetParam());
    const int right = label.size.width - 1;
    const int bottom = label.size.height - 1;
    for (const auto& [x, y] : {std::pair(0, 0), {right, 0}, {0, bottom}, {right, bottom}}) {
        EXPECT_EQ(label.at(x, y).alpha(), 0) << x << ',' << y;
    }
    // Where a radius of 6 ends the edges are straight.
    const int radius = static_cast<int>(std::ceil(6 * label.scale));
    EXPECT_EQ(label.at(radius, 0).alpha(), 191);
    EXPECT_EQ(label.at(0, radius).alpha(), 191);
    EXPECT_LT(label.at(radius / 3, 0).alpha(), 191);
}

TEST_P(SizeLabelPicture, HasABlackGroundAtThreeQuarters) {
    const Drawn label(GetParam());
    const int padding = static_cast<int>(std::floor(7 * label.scale));
    for (int x = 0; x < padding; ++x) {
        EXPECT_EQ(label.at(x, label.size.height / 2), QColor(0, 0, 0, 191)) << x;
    }
}

TEST_P(SizeLabelPicture, HasWhiteTextInsideThePadding) {
    const Drawn label(GetParam());
    int white = 0;
    QRect inked;
    for (int y = 0; y < label.size.height; ++y) {
        for (int x = 0; x < label.size.width; ++x) {
            const QColor color = label.at(x, y);
            white += color == QColor(Qt::white) ? 1 : 0;
            EXPECT_TRUE(color.red() == color.green() && color.green() == color.blue())
                << "coloured fringe at " << x << ',' << y;
            if (label.isBright(x, y)) {
                inked |= QRect(x, y, 1, 1);
            }
        }
    }
    EXPECT_GT(white, 10 * label.scale);
    // A pixel of tolerance for the antialiasing of the outermost strokes.
    EXPECT_GE(inked.left(), std::floor(8 * label.scale) - 1);
    EXPECT_LE(inked.right(), label.size.width - 8 * label.scale + 1);
    EXPECT_GE(inked.top(), std::floor(4 * label.scale) - 1);
    EXPECT_LE(inked.bottom(), label.size.height - 4 * label.scale + 1);
    // From the first digit to the unit, the text fills the width that was measured.
    EXPECT_GT(inked.width(), 0.9 * (label.size.width - 16 * label.scale));
}

INSTANTIATE_TEST_SUITE_P(Scales, SizeLabelPicture, Values(1.0, 1.25, 1.5, 2.0));

TEST(SizeLabel, TextIsMonospacedAtTwelvePoints) {
    const auto width = [](const char* text) {
        return SizeLabel::textSize(QString::fromLatin1(text)).width;
    };
    EXPECT_EQ(width("iiii"), width("MMMM"));
    EXPECT_NEAR(width("0000"), 4 * width("0"), 1e-6);
    EXPECT_GE(SizeLabel::textSize(QStringLiteral("0")).height, 12);
    EXPECT_LE(SizeLabel::textSize(QStringLiteral("0")).height, 18);
}

} // namespace

} // namespace snapvane
