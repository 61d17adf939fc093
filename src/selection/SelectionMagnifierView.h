#pragma once

#include "capture/DisplaySnapshot.h"
#include "platform/Sprites.h"
#include "selection/LoupeLayers.h"
#include "selection/LoupePixels.h"
#include "selection/MagnifierLabel.h"

#include <optional>

namespace snapvane {

/// Draws the loupe: the pixels around the pointer enlarged in a circle, upright, and a label below
/// them. Owned by SelectionMagnifierController, which tells it what to show. Main thread.
class SelectionMagnifierView {
public:
    /// In points.
    static constexpr GlobalSize size = {160, 164};

    /// The picture of the screen under the pointer; the circle is black without one.
    std::optional<DisplaySnapshot> snapshot;
    /// Where the pointer is on that screen: points from its lower-left corner.
    GlobalPoint localPoint;
    GlobalPoint globalPoint;
    /// Zero while nothing is dragged.
    GlobalSize selectionSize;

    /// The picture at `scale` pixels a point, with smooth edges or, for a desktop without
    /// transparency, to be cut to its shape. The image is the view's own and is drawn over by the
    /// next call, unless somebody has a copy.
    const SpritePicture& draw(double scale, bool isTranslucent);

    SelectionMagnifierView() { reloadStyle(); }

    /// Has fonts and colours looked up anew.
    void reloadStyle();

private:
    /// What depends on nothing but the look.
    struct Stage {
        LoupeLook look;
        LoupeGeometry geometry;
        LoupeLayers layers;
    };

    const Stage& stageFor(const LoupeLook& look);
    void drawCircle(const Stage& stage);
    void fillCells(const Stage& stage, const LoupePixels::Cells& cells);

    MagnifierLabel m_label;
    QColor m_frameColor;
    QColor m_reticleColor;
    // One a scale, since the pointer may cross from screen to screen.
    std::vector<Stage> m_stages;
    SpritePicture m_picture;
};

} // namespace snapvane
