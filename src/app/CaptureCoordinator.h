#pragma once

#include "base/Log.h"
#include "capture/CaptureResult.h"
#include "hud/AlertPresenter.h"
#include "selection/CaptureTrigger.h"
#include "selection/SelectionOverlayController.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <optional>

namespace snapvane {

/// Drives one capture from the moment it is asked for to the hand-over of the picture to what
/// happens after captures. Keeps no state of a capture: several may be under way, each on its own.
/// Main thread.
class CaptureCoordinator : public QObject {
    Q_OBJECT

public:
    using CaptureRegion = std::function<QCoro::Task<CaptureResult>(GlobalRect)>;
    using RunConfiguredAction = std::function<QCoro::Task<>(CaptureResult)>;

    struct Collaborators {
        SelectionOverlayController::Collaborators overlay;
        CaptureRegion captureRegion;
        RunConfiguredAction runConfiguredAction;
        AlertPresenter& alerts;
    };

    explicit CaptureCoordinator(const Collaborators& collaborators);

    /// The program's own; never released.
    static CaptureCoordinator& shared();

    /// Starts a selection, replacing one that is open, and returns at once. Callers have checked
    /// that the screen may be read.
    void beginAreaCapture(CaptureTrigger trigger = CaptureTrigger::Shortcut);

    SelectionOverlayController& overlayController() { return m_overlayController; }

    /// True while a capture past its selection is still being taken, encoded or acted on; the
    /// program does not leave before.
    bool isBusy() const { return m_runningCaptures > 0; }

private:
    QCoro::Task<> runCapture(std::optional<GlobalRect> rect);
    QCoro::Task<> handleSelection(std::optional<GlobalRect> rect);
    void report(const QString& description);

    Log m_log{"CaptureCoordinator"};
    SelectionOverlayController m_overlayController;
    CaptureRegion m_captureRegion;
    RunConfiguredAction m_runConfiguredAction;
    AlertPresenter& m_alerts;
    int m_runningCaptures = 0;
};

} // namespace snapvane
