#pragma once

#include "capture/DisplaySnapshot.h"

#include <QCoroTask>

namespace snapvane {

/// Where the overlay controller gets the pictures for the loupe from.
class SnapshotSource {
public:
    virtual ~SnapshotSource() = default;

    /// One picture a screen, without the program's own windows; throws when the platform does.
    virtual QCoro::Task<DisplaySnapshotList> captureAllDisplays() = 0;
};

/// Takes none, for as long as there is no loupe to show them.
class NoSnapshots : public SnapshotSource {
public:
    QCoro::Task<DisplaySnapshotList> captureAllDisplays() override {
        co_return DisplaySnapshotList();
    }
};

} // namespace snapvane
