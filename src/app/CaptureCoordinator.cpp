#include "app/CaptureCoordinator.h"

#include "actions/CapturePostActionExecutor.h"
#include "app/AfterCapture.h"
#include "base/Async.h"
#include "base/LocalizedError.h"
#include "base/Translation.h"
#include "capture/CaptureService.h"
#include "hud/ModalAlertPresenter.h"
#include "platform/Platform.h"
#include "selection/AppPreferences.h"
#include "selection/ScreenCenterOverlayManager.h"
#include "selection/SelectionMagnifierController.h"

namespace snapvane {

namespace {

CaptureCoordinator::Collaborators sharedCollaborators() {
    // They live as long as the coordinator that they are for: for the whole run.
    Platform& platform = Platform::shared();
    AppPreferences& preferences = AppPreferences::shared();
    static auto* magnifier =
        new SelectionMagnifierController(preferences, platform.screens(), platform.sprites());
    static auto* snapshots = new ScreenSnapshots(DisplaySnapshotStore::Facilities::shared());
    return {{preferences, platform.screens(), platform.overlays(),
             ScreenCenterOverlayManager::shared(), *magnifier, *snapshots},
            [](GlobalRect rect) {
                return CaptureService::captureRegion(rect, CaptureService::Facilities::shared());
            },
            [](CaptureResult result) {
                return CapturePostActionExecutor::runConfiguredAction(
                    std::move(result), sharedAfterCaptureFacilities());
            },
            ModalAlertPresenter::shared()};
}

} // namespace

CaptureCoordinator::CaptureCoordinator(const Collaborators& collaborators)
    : m_overlayController(collaborators.overlay), m_captureRegion(collaborators.captureRegion),
      m_runConfiguredAction(collaborators.runConfiguredAction), m_alerts(collaborators.alerts) {}

CaptureCoordinator& CaptureCoordinator::shared() {
    static auto* coordinator = new CaptureCoordinator(sharedCollaborators());
    return *coordinator;
}

void CaptureCoordinator::beginAreaCapture(CaptureTrigger trigger) {
    const QPointer<CaptureCoordinator> self(this);
    m_overlayController.present(
        [self](std::optional<GlobalRect> rect) {
            if (self) {
                startDetached(self->runCapture(rect));
            }
        },
        trigger);
}

QCoro::Task<> CaptureCoordinator::runCapture(std::optional<GlobalRect> rect) {
    const QPointer<CaptureCoordinator> self(this);
    ++m_runningCaptures;
    auto handling = handleSelection(rect);
    co_await handling;
    if (self) {
        --m_runningCaptures;
    }
}

QCoro::Task<> CaptureCoordinator::handleSelection(std::optional<GlobalRect> rect) {
    if (!rect) {
        co_return;
    }
    const QPointer<CaptureCoordinator> self(this);
    const RunConfiguredAction runConfiguredAction = m_runConfiguredAction;
    std::optional<CaptureResult> result;
    QString failure;
    try {
        auto capturing = m_captureRegion(*rect);
        result = co_await capturing;
    } catch (const LocalizedError& error) {
        failure = error.localizedDescription();
    } catch (const std::exception& error) {
        failure = QString::fromUtf8(error.what());
    }
    if (!result) {
        if (self) {
            report(failure);
        }
        co_return;
    }
    auto following = runConfiguredAction(std::move(*result));
    co_await following;
}

void CaptureCoordinator::report(const QString& description) {
    m_log.error(QStringLiteral("Capture failed: %1").arg(description));
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.messageText = description;
    alert.buttons = {translated("OK")};
    m_alerts.present(alert);
}

} // namespace snapvane
