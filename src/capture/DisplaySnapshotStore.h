#pragma once

#include "capture/DisplaySnapshot.h"
#include "platform/Capturer.h"
#include "platform/Screens.h"

#include <QCoroTask>

#include <optional>

/// Still pictures of all screens without the program's own windows, from before the overlay
/// appears. Keeps nothing: the list belongs to whoever asked for it.
namespace snapvane::DisplaySnapshotStore {

/// The platform facilities that the snapshots are taken with; they must outlive the call.
struct Facilities {
    ScreenCapturer* capturer;
    Screens* screens;
    /// Whose windows are left out of the pictures; an empty one leaves none out.
    QString bundleIdentifier;

    /// Those of the platform that the program runs on.
    static Facilities shared();
};

/// One picture a screen, in the order of the screens, taken one after another. A screen that no
/// display belongs to, or whose picture cannot be kept, is left out. Throws what the platform
/// threw; then there is no list at all. Called and resumed on the main thread; the work is done
/// elsewhere.
QCoro::Task<DisplaySnapshotList> captureAllDisplays(Facilities facilities);

/// A snapshot and a place on it: points from the screen's lower-left corner, y upwards.
struct SnapshotPlace {
    const DisplaySnapshot* snapshot = nullptr;
    GlobalPoint localPoint;
};

/// The first snapshot whose screen contains the point (global points). A point on no screen belongs
/// to the first snapshot, with a place outside of it. Nothing when the list is empty. Pure; the
/// answer points into the list.
std::optional<SnapshotPlace> snapshotFor(GlobalPoint point, const DisplaySnapshotList& list);

/// The windows whose program has that identifier, in the content's order; none for an empty
/// identifier. A window that tells no program belongs to another one. Pure.
std::vector<ShareableWindow> ownApplicationWindows(const ShareableContent& content,
                                                   const QString& bundleIdentifier);

} // namespace snapvane::DisplaySnapshotStore
