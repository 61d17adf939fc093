#pragma once

#include "selection/Magnifier.h"
#include "selection/SelectionMagnifierView.h"

namespace snapvane {

class AppPreferences;

/// The loupe: owns its window and the session's snapshots, and keeps the window near the pointer.
/// Lives as long as the overlay controller, which feeds it. Main thread.
class SelectionMagnifierController : public Magnifier {
public:
    /// Above the guide lines.
    static constexpr int level = 1002;

    /// Everything must outlive the controller.
    SelectionMagnifierController(AppPreferences& preferences, Screens& screens, Sprites& sprites)
        : m_preferences(preferences), m_screens(screens), m_sprites(sprites) {}

    /// Makes the window when it is needed for the first time. It is seen from the first `update`
    /// on, which has something to show in it.
    void prepare(const DisplaySnapshotList& snapshots) override;
    void update(GlobalPoint globalPoint, GlobalSize selectionSize) override;
    void dismiss() override;

    const DisplaySnapshotList& snapshots() const { return m_snapshots; }
    /// Nothing before the first `prepare`.
    const ImageSprite* window() const { return m_window.get(); }
    const SelectionMagnifierView& magnifierView() const { return m_magnifierView; }

    /// Where the loupe's lower-left corner goes; all in global points. Up and to the right of the
    /// pointer, on its other side where the usable area of the screen ends, and never beyond that
    /// area's left or lower edge. Pure.
    static GlobalPoint origin(GlobalPoint pointer, const GlobalRect& visibleFrame);

private:
    void positionWindow(GlobalPoint pointer);

    AppPreferences& m_preferences;
    Screens& m_screens;
    Sprites& m_sprites;
    DisplaySnapshotList m_snapshots;
    SelectionMagnifierView m_magnifierView;
    std::unique_ptr<ImageSprite> m_window;
};

} // namespace snapvane
