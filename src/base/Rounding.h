#pragma once

#include <cstdint>
#include <source_location>

namespace snapvane {

/// The nearest integer, halves away from zero. A value that is not finite or does not fit a signed
/// 64-bit integer is a program error reported at the caller's place.
std::int64_t roundedInteger(double value,
                            std::source_location where = std::source_location::current());

/// The same for pixel coordinates and sizes, which are plain ints everywhere.
int roundedPixel(double value, std::source_location where = std::source_location::current());

} // namespace snapvane
