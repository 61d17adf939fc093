#include "actions/FileError.h"

#include <QFileInfo>

namespace snapvane {

FileError::FileError(const QString& path, const QString& systemText)
    : LocalizedError(QStringLiteral("%1: %2").arg(QFileInfo(path).fileName(), systemText)) {}

FileError::FileError(const QString& path, std::error_code code)
    : FileError(path, QString::fromStdString(code.message())) {}

} // namespace snapvane
