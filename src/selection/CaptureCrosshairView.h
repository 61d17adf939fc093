#pragma once

#include "platform/ScreenMapping.h"
#include "platform/Sprites.h"

namespace snapvane {

/// The two lines on one screen: a sprite each, so that moving them repaints nothing but the two
/// strips they leave and the two they come to. Owned by ScreenCenterOverlayManager; main thread.
class CaptureCrosshairView {
public:
    /// Of the lines, in points.
    static constexpr double thickness = 1;

    /// Hidden to begin with.
    CaptureCrosshairView(Sprites& sprites, Screen screen, int level);

    const Screen& screen() const { return m_screen; }

    /// Where the lines cross: points, relative to the lower-left corner of the screen.
    GlobalPoint crosshairPoint() const { return m_crosshairPoint; }
    void setCrosshairPoint(GlobalPoint point) { m_crosshairPoint = point; }

    /// Shows the lines at their place, above all other programs' windows.
    void orderFrontRegardless();
    void orderOut();
    bool isVisible() const { return m_vertical->isVisible(); }

private:
    Screen m_screen;
    GlobalPoint m_crosshairPoint;
    std::unique_ptr<SolidSprite> m_vertical;
    std::unique_ptr<SolidSprite> m_horizontal;
};

} // namespace snapvane
