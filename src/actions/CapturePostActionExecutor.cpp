#include "actions/CapturePostActionExecutor.h"

#include "actions/CapturePreferences.h"
#include "actions/SaveToFolderCaptureAction.h"
#include "base/LocalizedError.h"
#include "base/Log.h"

namespace snapvane::CapturePostActionExecutor {

namespace {

const Log& batchLog() {
    static const Log log("AfterCaptureBatch");
    return log;
}

} // namespace

QCoro::Task<> runConfiguredAction(CaptureResult result) {
    SaveToFolderCaptureAction action(CapturePreferences::resolvedSaveFolderPath());
    auto saving = action.perform(std::move(result));
    try {
        co_await saving;
    } catch (const LocalizedError& error) {
        batchLog().error(QStringLiteral("Save failed: %1").arg(error.localizedDescription()));
    } catch (const std::exception& error) {
        batchLog().error(QStringLiteral("Save failed: %1").arg(QString::fromUtf8(error.what())));
    }
}

} // namespace snapvane::CapturePostActionExecutor
