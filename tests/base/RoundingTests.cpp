#include "base/Rounding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>

namespace snapvane {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;

struct Case {
    double value;
    std::int64_t rounded;
};

} // namespace

TEST(Rounding, TakesHalvesAwayFromZero) {
    const Case cases[] = {{0.0, 0},
                          {-0.0, 0},
                          {0.49999999999999994, 0},
                          {-0.49999999999999994, 0},
                          {0.5, 1},
                          {-0.5, -1},
                          {1.5, 2},
                          {-1.5, -2},
                          {2.5, 3},
                          {-2.5, -3},
                          {151.5, 152},
                          {151.49, 151},
                          {-151.5, -152},
                          {4503599627370495.5, 4503599627370496}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        EXPECT_EQ(roundedInteger(c.value), c.rounded);
    }
}

TEST(Rounding, ReachesTheLimitsOfAnInteger) {
    EXPECT_EQ(roundedInteger(-twoTo63), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(roundedInteger(std::nextafter(twoTo63, 0.0)), 9223372036854774784);
}

TEST(Rounding, ReachesTheLimitsOfAPixel) {
    EXPECT_EQ(roundedPixel(2147483647.49), std::numeric_limits<int>::max());
    EXPECT_EQ(roundedPixel(-2147483648.49), std::numeric_limits<int>::min());
    EXPECT_EQ(roundedPixel(-0.5), -1);
}

TEST(RoundingDeathTest, StopsAtValuesThatAreNotFinite) {
    const double values[] = {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity()};
    for (const double value : values) {
        SCOPED_TRACE(value);
        EXPECT_EXIT(roundedInteger(value), ::testing::KilledBySignal(SIGABRT),
                    "not finite.*RoundingTests\\.cpp:[0-9]+");
        EXPECT_EXIT(roundedPixel(value), ::testing::KilledBySignal(SIGABRT),
                    "not finite.*RoundingTests\\.cpp:[0-9]+");
    }
}

TEST(RoundingDeathTest, StopsAtValuesThatAreTooLarge) {
    for (const double value : {twoTo63, std::nextafter(-twoTo63, -1e300), 1e300, -1e300}) {
        SCOPED_TRACE(value);
        EXPECT_EXIT(roundedInteger(value), ::testing::KilledBySignal(SIGABRT),
                    "does not fit.*RoundingTests\\.cpp:[0-9]+");
    }
    for (const double value : {2147483647.5, -2147483648.5, 1e300}) {
        SCOPED_TRACE(value);
        EXPECT_EXIT(roundedPixel(value), ::testing::KilledBySignal(SIGABRT),
                    "does not fit.*RoundingTests\\.cpp:[0-9]+");
    }
}

} // namespace snapvane
