#include "capture/ScreenCapturePermissionManager.h"

#include "base/Translation.h"
#include "hud/ModalAlertPresenter.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QUrl>

namespace snapvane {

namespace {

constexpr int openSettingsButton = 0;

Alert permissionAlert() {
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.messageText = translated("Screen Recording Permission Required");
    alert.informativeText = translated(
        "Snapvane needs Screen Recording access to capture regions of your display. Grant access "
        "in "
        "System Settings under Privacy & Security \u2192 Screen & System Audio Recording, then "
        "restart the app if needed.");
    alert.buttons = {translated("Open System Settings"), translated("Not Now")};
    return alert;
}

} // namespace

ScreenCapturePermissionManager::ScreenCapturePermissionManager(AlertPresenter& alerts,
                                                               Workspace& workspace)
    : m_alerts(alerts), m_workspace(workspace) {}

ScreenCapturePermissionManager& ScreenCapturePermissionManager::shared() {
    static ScreenCapturePermissionManager manager(ModalAlertPresenter::shared(),
                                                  Platform::shared().workspace());
    return manager;
}

void ScreenCapturePermissionManager::presentPermissionAlertIfNeeded(bool force) {
    if (!force && m_didShowLaunchAlert) {
        return;
    }
    m_didShowLaunchAlert = true;
    if (m_alerts.present(permissionAlert()) == openSettingsButton) {
        openSystemSettings();
    }
}

void ScreenCapturePermissionManager::openSystemSettings() {
    const QUrl pane(QStringLiteral(
        "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));
    if (pane.isValid() && !m_workspace.open(pane)) {
        // Desktops without that link have a panel of their own.
        m_workspace.openPrivacyPanel();
    }
}

} // namespace snapvane
