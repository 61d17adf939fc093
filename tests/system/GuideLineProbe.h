#pragma once

#include "LoupeProbe.h"

namespace snapvane::testing {

/// Looks for the guide lines on a virtual desktop. All places in native pixels of the desktop. Test
/// thread only.
class GuideLineProbe {
public:
    /// `loupe` knows the screens, and what may lie over the lines.
    GuideLineProbe(const VirtualDesktop& desktop, LoupeProbe loupe)
        : m_desktop(desktop), m_loupe(std::move(loupe)) {}

    /// The upright line and the level one through a pixel.
    [[nodiscard]] std::vector<QRect> places(const QPoint& pointer) const;
    /// The windows of the lines that can be seen, the upright one first.
    [[nodiscard]] std::vector<QRect> windows() const;
    /// How many windows of lines there are, whether seen or not.
    [[nodiscard]] int windowCount() const;

    /// Waits until there are just the two lines through the pixel, both red from end to end but for
    /// where the loupe is.
    [[nodiscard]] ::testing::AssertionResult show(const QPoint& pointer) const;
    /// Waits until no line is to be seen.
    [[nodiscard]] ::testing::AssertionResult areGone() const;

private:
    [[nodiscard]] bool areRed(const std::vector<QRect>& lines) const;

    const VirtualDesktop& m_desktop;
    LoupeProbe m_loupe;
};

} // namespace snapvane::testing
