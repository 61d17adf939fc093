#include "actions/CopyToClipboardCaptureAction.h"

#include "actions/AfterCapturePasteboard.h"
#include "base/Translation.h"

namespace snapvane {

QCoro::Task<std::optional<QString>> CopyToClipboardCaptureAction::perform(CaptureResult result) {
    AfterCapturePasteboard::write(m_pasteboard, result, true, std::nullopt);
    co_return translated("Image copied");
}

} // namespace snapvane
