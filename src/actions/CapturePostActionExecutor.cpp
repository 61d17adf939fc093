#include "actions/CapturePostActionExecutor.h"

#include "actions/AfterCaptureBatchRunner.h"
#include "actions/CapturePreferences.h"
#include "actions/CopyToClipboardCaptureAction.h"
#include "actions/ErrorText.h"
#include "actions/FerryboxUploadCaptureAction.h"
#include "actions/SaveToFolderCaptureAction.h"
#include "base/Log.h"

namespace snapvane::CapturePostActionExecutor {

namespace {

const Log& postCaptureLog() {
    static const Log log("PostCapture");
    return log;
}

std::unique_ptr<CaptureAction> actionFor(PostCaptureMenuAction menuAction,
                                         const AfterCaptureFacilities& facilities) {
    switch (menuAction) {
    case PostCaptureMenuAction::uploadFerrybox:
        return std::make_unique<FerryboxUploadCaptureAction>(facilities.uploader,
                                                             facilities.pasteboard);
    case PostCaptureMenuAction::saveToFolder:
        return std::make_unique<SaveToFolderCaptureAction>(
            facilities.preferences.saveFolderResolver());
    default:
        return std::make_unique<CopyToClipboardCaptureAction>(facilities.pasteboard);
    }
}

QCoro::Task<> runSingle(std::unique_ptr<CaptureAction> action, CaptureResult result,
                        AfterCaptureFacilities facilities) {
    std::optional<QString> notice;
    try {
        auto performing = action->perform(std::move(result));
        notice = co_await performing;
    } catch (...) {
        notice = currentErrorText();
        postCaptureLog().error(QStringLiteral("Post-capture action failed: %1").arg(*notice));
    }
    if (notice) {
        facilities.showNotice(*notice, noticeDuration);
    }
}

QCoro::Task<> runEnabledActions(CaptureResult result, const AfterCaptureFacilities& facilities) {
    return AfterCaptureBatchRunner::run(facilities.preferences.enabledActions(), std::move(result),
                                        facilities);
}

} // namespace

QCoro::Task<> runConfiguredAction(CaptureResult result, AfterCaptureFacilities facilities) {
    if (facilities.preferences.askMeAfterCapture()) {
        facilities.askUser(std::move(result));
        co_return;
    }
    auto running = runEnabledActions(std::move(result), facilities);
    co_await running;
}

QCoro::Task<> run(PostCaptureMenuAction menuAction, CaptureResult result,
                  AfterCaptureFacilities facilities) {
    auto running =
        menuAction == PostCaptureMenuAction::runSavedDefaults
            ? runEnabledActions(std::move(result), facilities)
            : runSingle(actionFor(menuAction, facilities), std::move(result), facilities);
    co_await running;
}

} // namespace snapvane::CapturePostActionExecutor
