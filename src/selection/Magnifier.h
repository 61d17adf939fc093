#pragma once

#include "capture/DisplaySnapshot.h"

namespace snapvane {

/// The loupe, as the overlay controller sees it. Main thread.
class Magnifier {
public:
    virtual ~Magnifier() = default;

    /// Takes the session's snapshots over; the loupe is seen from the next `update` on.
    virtual void prepare(const DisplaySnapshotList& snapshots) = 0;
    /// Moves the loupe to a place; the size is zero while nothing is dragged.
    virtual void update(GlobalPoint globalPoint, GlobalSize selectionSize) = 0;
    /// Takes the loupe off the screen and forgets the snapshots.
    virtual void dismiss() = 0;
};

} // namespace snapvane
