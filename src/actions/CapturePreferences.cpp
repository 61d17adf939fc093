#include "actions/CapturePreferences.h"

#include "base/AppIdentity.h"

#include <QDir>
#include <QStandardPaths>

namespace snapvane::CapturePreferences {

QString defaultSaveFolderPath() {
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QDir parent(pictures.isEmpty() ? QDir::homePath() : pictures);
    return parent.filePath(QLatin1String(productName));
}

QString resolvedSaveFolderPath() {
    QString path = defaultSaveFolderPath();
    // A failure shows when something is saved there.
    QDir().mkpath(path);
    return path;
}

} // namespace snapvane::CapturePreferences
