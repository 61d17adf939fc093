#pragma once

#include "selection/CaptureCrosshairView.h"
#include "selection/GuideLines.h"

#include <memory>
#include <vector>

namespace snapvane {

class AppPreferences;

/// Shows the guide lines on the screen under the pointer, for as long as a selection session is
/// active and the user wants them. Fed by the overlay controller and by the status menu. Owns the
/// lines of every screen; they are made anew when the screens change and whenever a session starts,
/// and go when it ends. Main thread.
class ScreenCenterOverlayManager : public GuideLines {
public:
    /// Above the selection overlay, below the loupe.
    static constexpr int level = 1001;

    /// Everything must outlive the manager.
    ScreenCenterOverlayManager(AppPreferences& preferences, Screens& screens, Sprites& sprites)
        : m_preferences(preferences), m_screens(screens), m_sprites(sprites) {}

    /// The program's own; made when first asked for, never released.
    static ScreenCenterOverlayManager& shared();

    void rebuildOverlays() override;
    void hideOverlays() override;
    void updateCursor(GlobalPoint globalPoint) override;
    void screenParametersChanged() override;

    /// One a screen, in the platform's order, as of the last rebuilding; none between sessions.
    const std::vector<std::unique_ptr<CaptureCrosshairView>>& overlays() const {
        return m_overlays;
    }

private:
    bool isWanted() const;
    /// False when the lines were made for other screens than these.
    bool isBuiltFor(const ScreenList& screens) const;
    CaptureCrosshairView* overlayOn(GlobalPoint point) const;

    AppPreferences& m_preferences;
    Screens& m_screens;
    Sprites& m_sprites;
    std::vector<std::unique_ptr<CaptureCrosshairView>> m_overlays;
};

} // namespace snapvane
