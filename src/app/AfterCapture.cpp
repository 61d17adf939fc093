#include "app/AfterCapture.h"

#include "actions/CapturePostActionExecutor.h"
#include "actions/CapturePreferences.h"
#include "base/Async.h"
#include "hud/CaptureHUD.h"
#include "platform/Platform.h"
#include "upload/FerryboxAPIKeyTasks.h"
#include "upload/FerryboxBaseURL.h"
#include "upload/FerryboxUploadService.h"
#include "upload/HttpSession.h"

namespace snapvane {

namespace {

/// Uploads with the program's own key to the service that the program was built for. The network
/// library is not touched before the first one. Main thread.
class SharedUploads : public FerryboxUploading {
public:
    QCoro::Task<QUrl> uploadPNG(QByteArray data, QString filename) override {
        if (m_ended) {
            throw TransportError::abandoned();
        }
        if (!m_service) {
            m_session = std::make_unique<HttpSession>();
            m_service = std::make_unique<FerryboxUploadService>(ferryboxBaseURL(), *m_session, [] {
                return FerryboxAPIKeyTasks::shared().loadKey();
            });
        }
        return m_service->uploadPNG(std::move(data), std::move(filename));
    }

    /// An upload that still waits for its key gets none.
    void end() {
        m_ended = true;
        m_session.reset();
        FerryboxAPIKeyTasks::shared().end();
    }

private:
    bool m_ended = false;
    std::unique_ptr<HttpSession> m_session;
    std::unique_ptr<FerryboxUploadService> m_service;
};

SharedUploads& sharedUploads() {
    static auto* uploads = new SharedUploads;
    return *uploads;
}

int runningDefaults = 0;

QCoro::Task<> runSavedDefaults(CaptureResult result) {
    ++runningDefaults;
    auto running = CapturePostActionExecutor::run(
        PostCaptureMenuAction::runSavedDefaults, std::move(result), sharedAfterCaptureFacilities());
    co_await running;
    --runningDefaults;
}

/// Without a window to ask in, the capture must not be lost: the saved defaults are done.
void answerWithSavedDefaults(CaptureResult result) {
    startDetached(runSavedDefaults(std::move(result)));
}

} // namespace

AfterCaptureFacilities sharedAfterCaptureFacilities() {
    return {.preferences = CapturePreferences::shared(),
            .pasteboard = Platform::shared().pasteboard(),
            .uploader = sharedUploads(),
            .showNotice = [](const QString& message,
                             double duration) { CaptureHUD::shared().show(message, duration); },
            .askUser = answerWithSavedDefaults};
}

bool isActingOnCaptures() {
    return runningDefaults > 0;
}

void endUploads() {
    sharedUploads().end();
}

} // namespace snapvane
