#include "selection/CaptureCrosshairView.h"

#include "base/SystemColors.h"

namespace snapvane {

namespace {

std::unique_ptr<SolidSprite> createLine(Sprites& sprites, int level) {
    return sprites.createSolid(SystemColors::red(), {QStringLiteral("Snapvane Crosshair"), level});
}

} // namespace

CaptureCrosshairView::CaptureCrosshairView(Sprites& sprites, Screen screen, int level)
    : m_screen(std::move(screen)), m_vertical(createLine(sprites, level)),
      m_horizontal(createLine(sprites, level)) {}

void CaptureCrosshairView::orderFrontRegardless() {
    const auto lines = ScreenMapping::linesThrough(m_screen, m_crosshairPoint, thickness);
    m_vertical->showAt(m_screen, lines.vertical);
    m_horizontal->showAt(m_screen, lines.horizontal);
}

void CaptureCrosshairView::orderOut() {
    m_vertical->hide();
    m_horizontal->hide();
}

} // namespace snapvane
