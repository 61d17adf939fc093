#include "app/AfterCapture.h"

#include "actions/CapturePostActionExecutor.h"
#include "actions/CapturePreferences.h"
#include "actions/FerryboxUploading.h"
#include "base/Async.h"
#include "base/LocalizedError.h"
#include "base/Translation.h"
#include "hud/CaptureHUD.h"
#include "platform/Platform.h"

namespace snapvane {

namespace {

/// Without a client for the service there is no key for it either.
class NoUploads : public FerryboxUploading {
public:
    QCoro::Task<QUrl> uploadPNG(QByteArray, QString) override {
        throw LocalizedError(translated("Ferrybox API key is not set. Add it in Settings."));
        co_return QUrl();
    }
};

/// Without a window to ask in, the capture must not be lost: the saved defaults are done.
void answerWithSavedDefaults(CaptureResult result) {
    startDetached(CapturePostActionExecutor::run(PostCaptureMenuAction::runSavedDefaults,
                                                 std::move(result),
                                                 sharedAfterCaptureFacilities()));
}

} // namespace

AfterCaptureFacilities sharedAfterCaptureFacilities() {
    static NoUploads uploads;
    return {.preferences = CapturePreferences::shared(),
            .pasteboard = Platform::shared().pasteboard(),
            .uploader = uploads,
            .showNotice = [](const QString& message,
                             double duration) { CaptureHUD::shared().show(message, duration); },
            .askUser = answerWithSavedDefaults};
}

} // namespace snapvane
