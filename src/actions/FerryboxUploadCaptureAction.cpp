#include "actions/FerryboxUploadCaptureAction.h"

#include "actions/AfterCapturePasteboard.h"
#include "actions/FerryboxUploading.h"
#include "base/Translation.h"
#include "capture/CaptureFilename.h"

namespace snapvane {

QCoro::Task<std::optional<QString>> FerryboxUploadCaptureAction::perform(CaptureResult result) {
    auto uploading =
        m_uploader.uploadPNG(result.pngData, CaptureFilename::pngFilename(result.capturedAt));
    const QUrl url = co_await uploading;
    const QString link = QString::fromUtf8(url.toEncoded());
    AfterCapturePasteboard::write(m_pasteboard, result, false, link);
    co_return translated("Link copied");
}

} // namespace snapvane
