#include "base/Rounding.h"

#include "base/ProgramError.h"

#include <cmath>
#include <limits>

namespace snapvane {

std::int64_t roundedInteger(double value, std::source_location where) {
    if (!std::isfinite(value)) {
        programError("a value that is not finite cannot become an integer", where);
    }
    // 2^63 is exact as a double, while the largest 64-bit integer is not.
    constexpr double limit = 9223372036854775808.0;
    const double rounded = std::round(value);
    if (rounded < -limit || rounded >= limit) {
        programError("a value does not fit a 64-bit integer", where);
    }
    return static_cast<std::int64_t>(rounded);
}

int roundedPixel(double value, std::source_location where) {
    const std::int64_t rounded = roundedInteger(value, where);
    if (rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max()) {
        programError("a value does not fit a pixel coordinate", where);
    }
    return static_cast<int>(rounded);
}

} // namespace snapvane
