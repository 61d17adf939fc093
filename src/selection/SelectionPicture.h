#pragma once

#include "platform/Overlay.h"

#include <optional>

namespace snapvane {

/// What one screen's surface shows during a selection, in that screen's pixels: the veil, the hole
/// with its outline, the size label. A value that two moments can be compared by, so that only what
/// changed between them is painted.
struct SelectionPicture {
    struct Label {
        QString text;
        PixelRect box;

        friend bool operator==(const Label&, const Label&) = default;
    };

    /// Pixels of the screen.
    PixelSize size;
    /// Native pixels per point.
    double scale = 1;
    /// The width of the outline in pixels.
    double borderWidth = 0;
    /// The selection; may reach beyond the screen. Nothing when there is none.
    std::optional<PixelRect> hole;
    std::optional<Label> label;

    /// The picture of a screen. `selection` (global points) is empty when there is none; `bounds`
    /// is the whole overlay; `borderWidth` is in points.
    static SelectionPicture of(const Screen& screen, const GlobalRect& selection,
                               const GlobalRect& bounds, double borderWidth);

    /// The pixels that differ between the two pictures, or may do.
    static QRegion difference(const SelectionPicture& before, const SelectionPicture& after);

    /// Draws what lies in the canvas's region. The result does not depend on what was there before.
    void paint(OverlayCanvas& canvas, const QRegion& dirty) const;

    friend bool operator==(const SelectionPicture&, const SelectionPicture&) = default;

private:
    QRegion holeRegion() const;
    QRegion outlineRegion() const;
    QRegion labelRegion() const;
};

} // namespace snapvane
