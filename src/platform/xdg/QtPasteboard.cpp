#include "platform/xdg/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace snapvane::xdg {

void QtPasteboard::write(const PasteboardContents& contents) {
    auto* data = new QMimeData;
    if (contents.png && !contents.png->isEmpty()) {
        // As encoded bytes, which reach readers as they are; as an image they would be decoded and
        // encoded anew for each of them.
        data->setData(QStringLiteral("image/png"), *contents.png);
    } else if (contents.image && !contents.image->isNull()) {
        data->setImageData(*contents.image);
    }
    if (contents.text) {
        data->setText(*contents.text);
    }
    if (contents.url) {
        data->setUrls({*contents.url});
    }
    QGuiApplication::clipboard()->setMimeData(data);
}

} // namespace snapvane::xdg
