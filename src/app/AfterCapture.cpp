#include "app/AfterCapture.h"

#include "actions/CapturePostActionExecutor.h"
#include "actions/CapturePreferences.h"
#include "app/CaptureShortcutSwitch.h"
#include "base/Async.h"
#include "choice/PostCaptureAskChoiceController.h"
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

int runningChoices = 0;

QCoro::Task<> runChoice(PostCaptureMenuAction action, CaptureResult result) {
    ++runningChoices;
    auto running =
        CapturePostActionExecutor::run(action, std::move(result), sharedAfterCaptureFacilities());
    co_await running;
    --runningChoices;
}

PostCaptureAskChoiceController& askChoiceController() {
    static constexpr auto asked = CaptureShortcutSwitch::Reason::CaptureIsAskedAbout;
    Platform& platform = Platform::shared();
    static auto* controller = new PostCaptureAskChoiceController(
        {.screens = platform.screens(),
         .panels = platform.panels(),
         .keyboardLayout = platform.keyboardLayout(),
         .motionPreference = platform.motionPreference(),
         .preferences = CapturePreferences::shared(),
         .disableShortcut = [] { CaptureShortcutSwitch::shared().hold(asked); },
         .enableShortcut = [] { CaptureShortcutSwitch::shared().release(asked); },
         .run = [](PostCaptureMenuAction action,
                   CaptureResult result) { startDetached(runChoice(action, std::move(result))); }});
    return *controller;
}

bool wasAsked = false;
bool isLeaving = false;

void askUser(CaptureResult result) {
    if (isLeaving) {
        // There is nobody left to ask, and the capture must not be lost.
        startDetached(runChoice(PostCaptureMenuAction::runSavedDefaults, std::move(result)));
        return;
    }
    wasAsked = true;
    askChoiceController().present(std::move(result));
}

} // namespace

AfterCaptureFacilities sharedAfterCaptureFacilities() {
    return {.preferences = CapturePreferences::shared(),
            .pasteboard = Platform::shared().pasteboard(),
            .uploader = sharedUploads(),
            .showNotice = [](const QString& message,
                             double duration) { CaptureHUD::shared().show(message, duration); },
            .askUser = askUser};
}

bool isActingOnCaptures() {
    return runningChoices > 0;
}

void stopAsking() {
    isLeaving = true;
    // Nothing is made for the sake of being ended.
    if (wasAsked) {
        askChoiceController().close();
    }
}

void endUploads() {
    sharedUploads().end();
}

} // namespace snapvane
