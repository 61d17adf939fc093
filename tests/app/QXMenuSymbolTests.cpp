#include "app/QXMenuSymbol.h"

#include "base/SystemColors.h"
#include "selection/Required.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using QXMenuSymbol::Symbol;

struct SymbolCase {
    Symbol symbol;
    const char* name;
    const char* description;
};

constexpr std::array table = {
    SymbolCase{Symbol::captureArea, "viewfinder", "Capture Area"},
    SymbolCase{Symbol::crosshairLines, "plus.viewfinder", "Show crosshair lines while capturing"},
    SymbolCase{Symbol::settings, "gearshape", "Settings"},
    SymbolCase{Symbol::about, "info.circle", "About"},
    SymbolCase{Symbol::quit, "power", "Quit"},
};

class QXMenuSymbolTable : public ::testing::TestWithParam<std::size_t> {
protected:
    const SymbolCase& example = table.at(GetParam());
};

TEST_P(QXMenuSymbolTable, HasItsPlaceNameAndDescription) {
    EXPECT_EQ(QXMenuSymbol::allSymbols.at(GetParam()), example.symbol);
    EXPECT_EQ(QXMenuSymbol::symbolName(example.symbol).toStdString(), example.name);
    EXPECT_EQ(QXMenuSymbol::accessibilityDescription(example.symbol).toStdString(),
              example.description);
}

int inkedPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
        }
    }
    return count;
}

TEST_P(QXMenuSymbolTable, HasADrawing) {
    const auto image = QXMenuSymbol::makeImage(example.symbol);
    for (const int side : {14, 16, 32}) {
        const QPixmap pixmap = testing::required(image).pixmap(side, side);
        EXPECT_EQ(pixmap.width(), side);
        EXPECT_GT(inkedPixels(pixmap.toImage()), side) << side;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, QXMenuSymbolTable, ::testing::Range(std::size_t{0}, table.size()));

TEST(QXMenuSymbol, HasFiveCases) {
    EXPECT_EQ(QXMenuSymbol::allSymbols.size(), table.size());
}

TEST(QXMenuSymbol, AnUnknownNameHasNoImage) {
    EXPECT_FALSE(QXMenuSymbol::makeImage(QStringLiteral("no.such.symbol")).has_value());
    EXPECT_FALSE(QXMenuSymbol::makeImage(QString()).has_value());
}

TEST(QXMenuSymbol, ThePlaceholderIsADiscInTheSecondaryLabelColour) {
    const QIcon icon = QXMenuSymbol::imageOrPlaceholder(QStringLiteral("no.such.symbol"));
    ASSERT_FALSE(icon.isNull());
    const QImage image = icon.pixmap(16, 16).toImage();
    EXPECT_EQ(image.size(), QSize(16, 16));
    const QColor expected = SystemColors::secondaryLabel();
    const QColor shown = image.pixelColor(8, 8);
    EXPECT_NEAR(shown.alphaF(), expected.alphaF(), 0.01);
    EXPECT_NEAR(shown.lightnessF(), expected.lightnessF(), 0.02);
    for (const QPoint corner : {QPoint(0, 0), QPoint(15, 0), QPoint(0, 15), QPoint(15, 15)}) {
        EXPECT_EQ(image.pixelColor(corner).alpha(), 0);
    }
    // From border to border: an oval in the whole square.
    for (const QPoint edge : {QPoint(8, 0), QPoint(0, 8), QPoint(15, 8), QPoint(8, 15)}) {
        EXPECT_GT(image.pixelColor(edge).alpha(), 100);
    }
}

TEST(QXMenuSymbol, KnownNamesNeedNoPlaceholder) {
    const auto drawn = QXMenuSymbol::makeImage(QStringLiteral("power"));
    EXPECT_EQ(QXMenuSymbol::imageOrPlaceholder(QStringLiteral("power")).pixmap(16, 16).toImage(),
              testing::required(drawn).pixmap(16, 16).toImage());
}

TEST(QXMenuSymbol, OnlySystemsFrom27HaveToBeAskedToShowImages) {
    using QXMenuSymbol::needsPreferredImageVisibility;
    EXPECT_FALSE(needsPreferredImageVisibility(std::nullopt));
    EXPECT_FALSE(needsPreferredImageVisibility(QVersionNumber(14, 2)));
    EXPECT_FALSE(needsPreferredImageVisibility(QVersionNumber(26, 9, 9)));
    EXPECT_TRUE(needsPreferredImageVisibility(QVersionNumber(27, 0, 0)));
    EXPECT_TRUE(needsPreferredImageVisibility(QVersionNumber(27, 1)));
    EXPECT_TRUE(needsPreferredImageVisibility(QVersionNumber(28, 0, 0)));
}

/// A version is the same with and without zeros at its end.
TEST(QXMenuSymbol, ShortVersionsCountAsTheFullOnes) {
    EXPECT_TRUE(QXMenuSymbol::needsPreferredImageVisibility(QVersionNumber(27, 0)));
    EXPECT_TRUE(QXMenuSymbol::needsPreferredImageVisibility(QVersionNumber(27)));
}

} // namespace

} // namespace snapvane
