#include "base/Style.h"

#include "base/Contrast.h"

#include "TestPalette.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <gtest/gtest.h>

namespace snapvane {

namespace {

struct Palette {
    const char* name = "";
    QColor text;
    QColor window;
};

const Palette palettes[] = {{"Light", Qt::black, QColor(0xef, 0xef, 0xef)},
                            {"LightGreyText", QColor(0x23, 0x26, 0x29), QColor(0xef, 0xf0, 0xf1)},
                            {"Dark", Qt::white, QColor(0x32, 0x32, 0x32)},
                            {"DarkBlue", QColor(0xfc, 0xfc, 0xfc), QColor(0x2a, 0x2e, 0x32)}};

QColor pixelOf(double scale, const QRectF& rect, int x, int y) {
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.fillRect(Style::crisp(painter, rect), Qt::black);
    painter.end();
    return image.pixelColor(x, y);
}

} // namespace

class StylePalettes : public ::testing::TestWithParam<Palette> {};

INSTANTIATE_TEST_SUITE_P(Style, StylePalettes, ::testing::ValuesIn(palettes),
                         [](const auto& palette) { return palette.param.name; });

TEST_P(StylePalettes, TextCanBeRead) {
    const TestPalette palette(GetParam().text, GetParam().window);
    for (const QColor& background : {Style::surface(), Style::card()}) {
        EXPECT_GE(contrast(Style::primary(), background), readableContrast);
        EXPECT_GE(contrast(Style::secondary(), background), readableContrast);
        EXPECT_GE(contrast(Style::destructive(), background), readableContrast);
    }
}

TEST(Style, SecondaryIsThreeFifthsOfTextWhereThatIsEnough) {
    const TestPalette palette(Qt::black, Qt::white);
    EXPECT_NEAR(Style::secondary().alphaF(), 0.6, 0.001);
}

TEST_P(StylePalettes, SecondaryTextCanBeReadOnOtherBackgroundsToo) {
    const TestPalette palette(GetParam().text, GetParam().window);
    const QColor background = blended(Style::withOpacity(Style::primary(), 0.15), Style::surface());
    EXPECT_GE(contrast(Style::secondaryOn(background), background), readableContrast);
}

TEST_P(StylePalettes, AccentedIconsCanBeRecognised) {
    const TestPalette palette(GetParam().text, GetParam().window);
    EXPECT_GE(contrast(Style::accentOn(Style::surface()), Style::surface()), recognisableContrast);
}

TEST(Style, AccentedIconsHaveTheAccentWhereItCanBeRecognised) {
    const TestPalette palette(Qt::black, Qt::white);
    EXPECT_EQ(Style::accentOn(Style::surface()), Style::accent());
}

TEST_P(StylePalettes, WhatIsDestructiveIsRed) {
    const TestPalette palette(GetParam().text, GetParam().window);
    EXPECT_NEAR(std::remainder(Style::destructive().hsvHueF() * 360.0, 360.0), 0, 10);
}

TEST_P(StylePalettes, CardsStandOutTowardsTheLight) {
    const TestPalette palette(GetParam().text, GetParam().window);
    EXPECT_EQ(Style::surface(), GetParam().window);
    EXPECT_GE(Style::card().lightness(), Style::surface().lightness());
}

TEST(Style, AccentIsThePalettesHighlight) {
    const TestPalette palette(Qt::black, Qt::white);
    EXPECT_EQ(Style::accent(), TestPalette::highlight());
}

TEST(Style, OpacityIsAPartOfTheColoursOwn) {
    QColor half(10, 20, 30);
    half.setAlphaF(0.5F);
    const QColor quarter = Style::withOpacity(half, 0.5);
    EXPECT_NEAR(quarter.alphaF(), 0.25, 0.001);
    EXPECT_EQ(quarter.rgb(), half.rgb());
}

TEST(Style, FontsHaveTheirSizeInPointsOfTheDesktop) {
    const QFont font = Style::font(16, QFont::DemiBold);
    EXPECT_EQ(font.pixelSize(), 16);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
    EXPECT_EQ(font.family(), QGuiApplication::font().family());
}

TEST(Style, CrispEdgesCoverWholePixels) {
    // 5 points at 1.5 are 7.5 pixels: the eighth is covered or not, never half.
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        SCOPED_TRACE(scale);
        for (int x = 0; x < 40; ++x) {
            const QColor color = pixelOf(scale, QRectF(3, 3, 5.3, 5.3), x, 8);
            // The coordinates are not exact to the last bit.
            EXPECT_TRUE(color.red() <= 1 || color.red() >= 254) << x << ": " << color.red();
        }
    }
}

TEST(Style, CrispEdgesAreTheNearest) {
    EXPECT_EQ(pixelOf(1.5, QRectF(3, 3, 5, 5), 4, 8), Qt::white);
    EXPECT_EQ(pixelOf(1.5, QRectF(3, 3, 5, 5), 5, 8), Qt::black);
    EXPECT_EQ(pixelOf(1.5, QRectF(3, 3, 5, 5), 11, 8), Qt::black);
    EXPECT_EQ(pixelOf(1.5, QRectF(3, 3, 5, 5), 12, 8), Qt::white);
}

TEST(Style, StrokesStayWithinTheEdge) {
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    Style::strokeInside(painter, QRectF(5, 5, 10, 10), 0, Qt::black, 1);
    painter.end();
    EXPECT_EQ(image.pixelColor(4, 10), Qt::white);
    EXPECT_EQ(image.pixelColor(5, 10), Qt::black);
    EXPECT_EQ(image.pixelColor(6, 10), Qt::white);
    EXPECT_EQ(image.pixelColor(14, 10), Qt::black);
    EXPECT_EQ(image.pixelColor(15, 10), Qt::white);
}

} // namespace snapvane
