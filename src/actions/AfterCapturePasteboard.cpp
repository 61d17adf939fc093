#include "actions/AfterCapturePasteboard.h"

#include "platform/Pasteboard.h"

#include <QUrl>

namespace snapvane::AfterCapturePasteboard {

void write(Pasteboard& pasteboard, const CaptureResult& result, bool includeImage,
           const std::optional<QString>& link) {
    PasteboardContents contents;
    if (includeImage) {
        contents.png = result.pngData;
        contents.image = result.image.bitmap;
    }
    if (link) {
        contents.text = *link;
        const QUrl url(*link, QUrl::StrictMode);
        if (url.isValid() && !url.isEmpty()) {
            contents.url = url;
        }
    }
    pasteboard.write(contents);
}

} // namespace snapvane::AfterCapturePasteboard
