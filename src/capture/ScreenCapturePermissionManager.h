#pragma once

namespace snapvane {

class AlertPresenter;
class Workspace;

/// Remembers whether the program may read the screen, explains what to do when it may not, and
/// opens the desktop's settings. The answer is asked for once, when the program starts: granting
/// access later takes a restart. One instance for the whole run; main thread.
class ScreenCapturePermissionManager {
public:
    ScreenCapturePermissionManager(AlertPresenter& alerts, Workspace& workspace);

    static ScreenCapturePermissionManager& shared();

    /// Set once by the start-up sequence.
    bool hasScreenCaptureAccess = false;

    /// Shows the alert, modally; without `force` only when it has not been shown in this run.
    void presentPermissionAlertIfNeeded(bool force);
    void openSystemSettings();

    bool didShowLaunchAlert() const { return m_didShowLaunchAlert; }

private:
    AlertPresenter& m_alerts;
    Workspace& m_workspace;
    bool m_didShowLaunchAlert = false;
};

} // namespace snapvane
