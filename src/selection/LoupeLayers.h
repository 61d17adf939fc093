#pragma once

#include "base/Geometry.h"

#include <QColor>
#include <QImage>

/// Everything of the loupe that is the same for every place, drawn once for a scale, so that
/// following the pointer is a matter of laying pictures over each other. Main thread.
namespace snapvane {

/// Where things are in the loupe's picture; pixels from its upper-left corner.
struct LoupeGeometry {
    /// `viewSize` is in points.
    LoupeGeometry(GlobalSize viewSize, double pixelsPerPoint);

    /// The edge before a column of cells, from the left, or before a row, from the top: pixels from
    /// the corner of the circle's square; edge(15) is its far side.
    int edge(int cell) const;
    /// A cell, in pixels of the circle's square.
    PixelRect cell(int column, int row) const;

    /// Pixels per point.
    double scale;
    PixelSize view;
    /// The square around the circle.
    PixelRect circle;
};

/// How the loupe is to look.
struct LoupeLook {
    double scale = 1;
    /// Without transparency there is no shadow.
    bool isTranslucent = true;
    QColor frameColor;
    QColor reticleColor;

    friend bool operator==(const LoupeLook&, const LoupeLook&) = default;
};

/// Premultiplied pictures. Those named after parts inside the circle have the size of its square.
struct LoupeLayers {
    LoupeLayers(const LoupeGeometry& geometry, const LoupeLook& look);

    /// The outlines of all cells.
    QImage grid;
    /// The frame of the middle cell and the cross over it.
    QImage marks;
    /// What is inside the circle.
    QImage mask;
    /// The circle's border; of the size of the view.
    QImage ring;
    /// What falls around the circle, of the size of the view; without transparency all black.
    QImage shadow;
};

} // namespace snapvane
