#include "selection/ScreenCenterOverlayManager.h"

#include "platform/Platform.h"
#include "selection/AppPreferences.h"

#include <algorithm>

namespace snapvane {

namespace {

/// True when the square of one point whose lower-left corner is there reaches into the screen or
/// touches its right or upper border, which plain containment leaves out.
bool isTouched(const GlobalRect& screen, GlobalPoint point) {
    return point.x + 1 > screen.minX() && point.x <= screen.maxX() && point.y + 1 > screen.minY() &&
           point.y <= screen.maxY();
}

} // namespace

ScreenCenterOverlayManager& ScreenCenterOverlayManager::shared() {
    static auto* manager = [] {
        Platform& platform = Platform::shared();
        return new ScreenCenterOverlayManager(AppPreferences::shared(), platform.screens(),
                                              platform.sprites());
    }();
    return *manager;
}

void ScreenCenterOverlayManager::rebuildOverlays() {
    hideOverlays();
    m_overlays.clear();
    for (const Screen& screen : m_screens.list()) {
        m_overlays.push_back(std::make_unique<CaptureCrosshairView>(m_sprites, screen, level));
    }
}

void ScreenCenterOverlayManager::hideOverlays() {
    for (const auto& overlay : m_overlays) {
        overlay->orderOut();
    }
    if (!captureSessionActive()) {
        // The next session makes new ones; nothing of them is to be left meanwhile.
        m_overlays.clear();
    }
}

void ScreenCenterOverlayManager::updateCursor(GlobalPoint globalPoint) {
    if (!isWanted()) {
        return;
    }
    CaptureCrosshairView* under = overlayOn(globalPoint);
    for (const auto& overlay : m_overlays) {
        if (overlay.get() != under) {
            overlay->orderOut();
        }
    }
    if (under != nullptr) {
        const GlobalRect& frame = under->screen().frame;
        under->setCrosshairPoint({globalPoint.x - frame.minX(), globalPoint.y - frame.minY()});
        under->orderFrontRegardless();
    }
}

void ScreenCenterOverlayManager::screenParametersChanged() {
    if (isWanted()) {
        if (!isBuiltFor(m_screens.list())) {
            rebuildOverlays();
        }
        updateCursor(m_screens.pointerLocation());
    }
}

bool ScreenCenterOverlayManager::isWanted() const {
    return captureSessionActive() && m_preferences.showCrosshairLinesWhileCapturing();
}

bool ScreenCenterOverlayManager::isBuiltFor(const ScreenList& screens) const {
    return std::equal(
        m_overlays.begin(), m_overlays.end(), screens.begin(), screens.end(),
        [](const auto& overlay, const Screen& screen) { return overlay->screen() == screen; });
}

CaptureCrosshairView* ScreenCenterOverlayManager::overlayOn(GlobalPoint point) const {
    auto found = std::find_if(m_overlays.begin(), m_overlays.end(), [point](const auto& overlay) {
        return overlay->screen().frame.contains(point);
    });
    if (found == m_overlays.end()) {
        found = std::find_if(m_overlays.begin(), m_overlays.end(), [point](const auto& overlay) {
            return isTouched(overlay->screen().frame, point);
        });
    }
    return found == m_overlays.end() ? nullptr : found->get();
}

} // namespace snapvane
