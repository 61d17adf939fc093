#pragma once

#include "base/Geometry.h"

#include <QImage>

#include <vector>

namespace snapvane {

/// A still picture of one screen from before the overlay appeared.
struct DisplaySnapshot {
    /// Global points.
    GlobalRect screenFrame;
    /// Native pixels per point.
    double backingScale = 1;
    /// The whole display at that density; owned by the program.
    QImage cgImage;
};

using DisplaySnapshotList = std::vector<DisplaySnapshot>;

} // namespace snapvane
