#include "base/SystemColors.h"

#include "TestPalette.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

using Color = QColor (*)();
constexpr Color namedColors[] = {SystemColors::blue, SystemColors::red, SystemColors::yellow,
                                 SystemColors::gray, SystemColors::orange};

} // namespace

TEST(SystemColors, FollowTheDesktopFromLightToDark) {
    std::vector<QColor> light;
    {
        const TestPalette palette(Qt::black, Qt::white);
        EXPECT_FALSE(SystemColors::isDark());
        for (const Color color : namedColors) {
            light.push_back(color());
        }
    }
    const TestPalette palette(Qt::white, Qt::black);
    EXPECT_TRUE(SystemColors::isDark());
    for (std::size_t i = 0; i < light.size(); ++i) {
        SCOPED_TRACE(i);
        const QColor dark = namedColors[i]();
        EXPECT_NE(dark, light[i]);
        EXPECT_EQ(dark.alpha(), 255);
        EXPECT_GE(dark.lightness(), light[i].lightness());
    }
}

TEST(SystemColors, HaveTheHuesOfTheirNames) {
    const TestPalette palette(Qt::black, Qt::white);
    EXPECT_NEAR(SystemColors::blue().hsvHue(), 215, 15);
    EXPECT_NEAR(SystemColors::red().hsvHue(), 358, 10);
    EXPECT_NEAR(SystemColors::yellow().hsvHue(), 50, 10);
    EXPECT_NEAR(SystemColors::orange().hsvHue(), 35, 10);
    EXPECT_LT(SystemColors::gray().hsvSaturation(), 40);
}

TEST(SystemColors, TakeAccentAndSecondaryLabelFromThePalette) {
    const TestPalette palette(QColor(0x10, 0x20, 0x30), Qt::white);
    EXPECT_EQ(SystemColors::accent(), TestPalette::highlight());
    QColor expected(0x10, 0x20, 0x30);
    expected.setAlphaF(0.6F);
    EXPECT_EQ(SystemColors::secondaryLabel(), expected);
}

} // namespace snapvane
