#pragma once

#include "VirtualDesktop.h"

#include <gtest/gtest.h>

#include <QImage>

#include <optional>
#include <vector>

namespace snapvane::testing {

/// Looks for the loupe on a virtual desktop and compares what is in it with the pixels that stood
/// on the desktop. All places in native pixels of the desktop. Test thread only.
class LoupeProbe {
public:
    /// `scales` are those of the screens from the left, pixels a point; 1 where there is none.
    LoupeProbe(const VirtualDesktop& desktop, std::vector<double> scales)
        : m_desktop(desktop), m_scales(std::move(scales)) {}

    /// Where the loupe belongs for a pointer at that pixel.
    [[nodiscard]] QRect place(const QPoint& pointer) const;
    /// Where it is on the glass; nothing when it cannot be seen.
    [[nodiscard]] std::optional<QRect> window() const;

    /// Waits until the loupe is in its place and every pixel in its cells, but for the ones that
    /// grid, marks and border touch, has the colour that `before`, a picture of the whole desktop,
    /// has there. Cells beside the screen must be black.
    [[nodiscard]] ::testing::AssertionResult shows(const QPoint& pointer,
                                                   const QImage& before) const;
    /// Waits until no loupe is to be seen.
    [[nodiscard]] ::testing::AssertionResult isGone() const;

    [[nodiscard]] QRect screenAt(const QPoint& pointer) const;
    [[nodiscard]] double scaleAt(const QPoint& pointer) const;

private:
    [[nodiscard]] int screenIndex(const QPoint& pointer) const;

    const VirtualDesktop& m_desktop;
    std::vector<double> m_scales;
};

} // namespace snapvane::testing
