#pragma once

#include "capture/DisplaySnapshotStore.h"

#include <QCoroTask>

#include <utility>

namespace snapvane {

/// Where the overlay controller gets the pictures for the loupe from.
class SnapshotSource {
public:
    virtual ~SnapshotSource() = default;

    /// One picture a screen, without the program's own windows; throws when the platform does.
    virtual QCoro::Task<DisplaySnapshotList> captureAllDisplays() = 0;
};

/// Takes them from the real screens. Owned by the capture coordinator; main thread.
class ScreenSnapshots : public SnapshotSource {
public:
    explicit ScreenSnapshots(DisplaySnapshotStore::Facilities facilities)
        : m_facilities(std::move(facilities)) {}

    QCoro::Task<DisplaySnapshotList> captureAllDisplays() override {
        return DisplaySnapshotStore::captureAllDisplays(m_facilities);
    }

private:
    DisplaySnapshotStore::Facilities m_facilities;
};

} // namespace snapvane
