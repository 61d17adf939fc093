#pragma once

#include "base/Geometry.h"

namespace snapvane {

/// The lines that cross at the pointer during a selection, as the overlay controller and the status
/// menu see them. Main thread.
class GuideLines {
public:
    virtual ~GuideLines() = default;

    bool captureSessionActive() const { return m_captureSessionActive; }
    void setCaptureSessionActive(bool active) { m_captureSessionActive = active; }

    /// Drops all line windows and makes new, hidden ones for the current screens.
    virtual void rebuildOverlays() = 0;
    /// Takes every line window off the screen.
    virtual void hideOverlays() = 0;
    /// Shows the lines at a place; hides them where no screen is.
    virtual void updateCursor(GlobalPoint globalPoint) = 0;
    virtual void screenParametersChanged() = 0;

private:
    bool m_captureSessionActive = false;
};

} // namespace snapvane
