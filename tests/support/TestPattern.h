#pragma once

#include <cstdint>

namespace snapvane::testing {

/// Every pixel is a function of its position, no two of a 4096 x 4096 area are alike and none is
/// grey, so that a shift by one pixel or swapped channels cannot go unseen.
constexpr uint32_t patternPixel(int x, int y, uint32_t seed = 0) {
    const auto column = static_cast<uint32_t>(x);
    const auto row = static_cast<uint32_t>(y);
    const uint32_t high = ((column >> 8U) & 15U) << 4U | ((row >> 8U) & 15U);
    const uint32_t plain = (column & 255U) << 16U | (row & 255U) << 8U | high;
    return plain ^ (seed * 0x3c6ef3U & 0xffffffU);
}

/// Noise that no encoder can make small, again a function of the position.
constexpr uint32_t noisePixel(int x, int y, uint32_t seed = 0) {
    uint32_t value =
        static_cast<uint32_t>(x) * 0x9e3779b1U ^ static_cast<uint32_t>(y) * 0x85ebca6bU;
    value = (value ^ seed ^ value >> 15U) * 0x2c1b3c6dU;
    value = (value ^ value >> 12U) * 0x297a2d39U;
    return (value ^ value >> 15U) & 0xffffffU;
}

/// How many frames a live window paints before the number in its pixels starts again.
inline constexpr uint32_t liveFrameCount = 4096;

/// A live window's pixel: the upper twelve bits are the number of the frame, the lower twelve a
/// pattern of that frame, so that one pixel tells the frame and all of them that it is whole.
constexpr uint32_t livePixel(uint32_t frame, int x, int y) {
    const uint32_t number = frame % liveFrameCount;
    const uint32_t pattern =
        static_cast<uint32_t>(x) * 5U + static_cast<uint32_t>(y) * 3U + number * 7U;
    return number << 12U | (pattern & 0xfffU);
}

constexpr uint32_t liveFrameOf(uint32_t pixel) {
    return (pixel >> 12U) & 0xfffU;
}

/// Properties that the test client puts on its window: set when the window has first been painted,
/// and the number of the frame last painted.
inline constexpr char paintedProperty[] = "_SNAPVANE_TEST_PAINTED";
inline constexpr char frameProperty[] = "_SNAPVANE_TEST_FRAME";

} // namespace snapvane::testing
