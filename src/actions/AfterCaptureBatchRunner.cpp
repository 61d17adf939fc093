#include "actions/AfterCaptureBatchRunner.h"

#include "actions/AfterCapturePasteboard.h"
#include "actions/CapturePreferences.h"
#include "actions/ErrorText.h"
#include "actions/FerryboxUploading.h"
#include "actions/SaveToFolderCaptureAction.h"
#include "base/Log.h"
#include "base/Translation.h"
#include "capture/CaptureFilename.h"

namespace snapvane::AfterCaptureBatchRunner {

namespace {

/// One run: the capture, and what has come of it so far.
struct Batch {
    CaptureResult result;
    AfterCaptureFacilities facilities;
    bool copy = false;
    std::optional<QString> link;
    QStringList parts;

    void fail(const QString& logText, const QString& description) {
        static const Log log("AfterCaptureBatch");
        log.error(logText.arg(description));
        facilities.showNotice(description, noticeDuration);
    }
};

QCoro::Task<> upload(Batch& batch) {
    std::optional<QString> failure;
    try {
        auto uploading = batch.facilities.uploader.uploadPNG(
            batch.result.pngData, CaptureFilename::pngFilename(batch.result.capturedAt));
        const QUrl url = co_await uploading;
        batch.link = QString::fromUtf8(url.toEncoded());
        batch.parts += translated("Link copied");
    } catch (...) {
        failure = currentErrorText();
    }
    if (failure) {
        batch.fail(QStringLiteral("Upload failed: %1"), *failure);
    }
}

QCoro::Task<> save(Batch& batch) {
    std::optional<QString> failure;
    try {
        SaveToFolderCaptureAction action(batch.facilities.preferences.saveFolderResolver());
        auto saving = action.perform(batch.result);
        const std::optional<QString> message = co_await saving;
        if (message) {
            batch.parts += *message;
        }
    } catch (...) {
        failure = currentErrorText();
    }
    if (failure) {
        batch.fail(QStringLiteral("Save failed: %1"), *failure);
    }
}

/// The one write to the clipboard, where there is anything to write.
void writeToPasteboard(Batch& batch) {
    if (!batch.copy && !batch.link) {
        return;
    }
    AfterCapturePasteboard::write(batch.facilities.pasteboard, batch.result, batch.copy,
                                  batch.link);
    if (batch.copy) {
        batch.parts += translated("Image copied");
    }
}

void showCombinedNotice(const Batch& batch) {
    if (!batch.parts.isEmpty()) {
        batch.facilities.showNotice(dedupeHUDParts(batch.parts).join(QStringLiteral(" \u00b7 ")),
                                    noticeDuration);
    }
}

} // namespace

QCoro::Task<> run(AfterCaptureActions actions, CaptureResult result,
                  AfterCaptureFacilities facilities) {
    if (actions.empty()) {
        facilities.showNotice(translated("No after-capture actions selected"), noticeDuration);
        co_return;
    }
    Batch batch{.result = std::move(result),
                .facilities = std::move(facilities),
                .copy = actions.contains(AfterCaptureAction::copyToClipboard),
                .link = {},
                .parts = {}};
    if (actions.contains(AfterCaptureAction::uploadFerrybox)) {
        auto uploading = upload(batch);
        co_await uploading;
    }
    if (actions.contains(AfterCaptureAction::saveToFolder)) {
        auto saving = save(batch);
        co_await saving;
    }
    writeToPasteboard(batch);
    showCombinedNotice(batch);
}

QStringList dedupeHUDParts(const QStringList& parts) {
    QStringList kept = parts;
    kept.removeDuplicates();
    return kept;
}

} // namespace snapvane::AfterCaptureBatchRunner
