#include "platform/xdg/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace snapvane::xdg {

void QtPasteboard::write(const PasteboardContents& contents) {
    auto* data = new QMimeData;
    if (contents.png) {
        // As encoded bytes, which reach readers as they are; as an image they would be decoded and
        // encoded anew.
        data->setData(QStringLiteral("image/png"), *contents.png);
    }
    if (contents.text) {
        data->setText(*contents.text);
    }
    if (contents.url) {
        data->setUrls({QUrl(*contents.url)});
    }
    QGuiApplication::clipboard()->setMimeData(data);
}

} // namespace snapvane::xdg
