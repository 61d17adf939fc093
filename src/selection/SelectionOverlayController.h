#pragma once

#include "capture/DisplaySnapshot.h"
#include "platform/Overlay.h"
#include "selection/CaptureTrigger.h"
#include "selection/GuideLines.h"
#include "selection/Magnifier.h"
#include "selection/SelectionOverlayWindow.h"
#include "selection/SnapshotSource.h"

#include <QCoroTask>
#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace snapvane {

class AppPreferences;
class Screens;

/// Runs selection sessions: takes the snapshots, shows the overlay, feeds the loupe and the guide
/// lines, and hands the result over once everything is off the screen again. Owned by the capture
/// coordinator. Main thread.
class SelectionOverlayController : public QObject, public SelectionOverlayViewDelegate {
    Q_OBJECT

public:
    /// The rectangle in global points, or nothing when the user cancelled.
    using Completion = std::function<void(std::optional<GlobalRect>)>;

    /// What the controller works with; everything must outlive it.
    struct Collaborators {
        AppPreferences& preferences;
        Screens& screens;
        OverlayHost& overlays;
        GuideLines& guideLines;
        Magnifier& magnifier;
        SnapshotSource& snapshots;
    };

    explicit SelectionOverlayController(const Collaborators& collaborators);
    ~SelectionOverlayController() override;

    /// Starts a session. The completion is called once, when it ends, unless another session
    /// replaces it first; then it is never called.
    void present(Completion completion, CaptureTrigger trigger = CaptureTrigger::Shortcut);
    /// Takes everything off the screen without calling the completion.
    void dismiss();

    /// Takes the session's completion out, leaving none.
    Completion takeCompletion();

    /// Counts every `present` and every `dismiss`; a session's work goes on only while it has not
    /// moved on.
    std::int64_t presentGeneration() const { return m_presentGeneration; }
    SelectionOverlayWindow* overlayWindow() { return m_overlayWindow.get(); }
    const DisplaySnapshotList& displaySnapshots() const { return m_displaySnapshots; }

    void selectionOverlayViewDidComplete(SelectionOverlayView& view,
                                         const GlobalRect& rect) override;
    void selectionOverlayViewDidCancel(SelectionOverlayView& view) override;

private:
    QCoro::Task<> presentWhenReady(std::int64_t token, CaptureTrigger trigger);
    QCoro::Task<DisplaySnapshotList> takeSnapshots();
    void presentOverlay(const DisplaySnapshotList& snapshots);
    void preparePointerCallback(SelectionOverlayView& view);
    void finish(std::optional<GlobalRect> result);
    void advanceGeneration();
    /// Begins the session that is going on anew, with pictures and surfaces that fit the desktop as
    /// it is now. A drag is dropped: its coordinates may mean other places.
    void restart();
    void screensChanged();

    Collaborators m_with;
    std::unique_ptr<SelectionOverlayWindow> m_overlayWindow;
    Completion m_completion;
    CaptureTrigger m_trigger = CaptureTrigger::Shortcut;
    bool m_sessionRunning = false;
    // Those that the session began with.
    ScreenList m_screens;
    DisplaySnapshotList m_displaySnapshots;
    std::int64_t m_presentGeneration = 0;
};

} // namespace snapvane
