#include "capture/CaptureFilename.h"

#include "base/AppIdentity.h"

#include <QLocale>

namespace snapvane::CaptureFilename {

QString pngFilename(const QDateTime& capturedAt) {
    const QString time =
        QLocale::c().toString(capturedAt.toLocalTime(), QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    return QStringLiteral("%1 %2.png").arg(QLatin1String(productName), time);
}

QRegularExpression pngFilenamePattern() {
    return QRegularExpression(
        QStringLiteral(R"(%1 [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}\.[0-9]{2}\.[0-9]{2}\.png)")
            .arg(QLatin1String(productName)));
}

} // namespace snapvane::CaptureFilename
