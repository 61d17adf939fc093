#include "base/Contrast.h"

#include <gtest/gtest.h>

namespace snapvane {

TEST(Contrast, IsOneOfAColourOnItself) {
    EXPECT_NEAR(contrast(Qt::darkCyan, Qt::darkCyan), 1, 0.001);
}

TEST(Contrast, OfBlackAndWhiteIsTheLargest) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.001);
}

TEST(Contrast, AgreesWithTheGuidelinesExample) {
    // #777 on white is the well-known grey that just misses level AA.
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005);
}

TEST(Contrast, CountsWhatShinesThrough) {
    QColor halfBlack(Qt::black);
    halfBlack.setAlphaF(0.5F);
    EXPECT_NEAR(contrast(halfBlack, Qt::white),
                contrast(QColor::fromRgbF(0.5F, 0.5F, 0.5F), Qt::white), 0.02);
}

} // namespace snapvane
