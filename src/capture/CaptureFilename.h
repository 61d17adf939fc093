#pragma once

#include <QDateTime>
#include <QRegularExpression>
#include <QString>

/// The rule that names saved and uploaded files.
namespace snapvane::CaptureFilename {

/// "Snapvane 2025-03-02 14.03.09.png": the capture time in the process's time zone, with plain
/// digits and a 24-hour clock whatever the user's locale. Captures within one second share a name.
QString pngFilename(const QDateTime& capturedAt);

/// What every such name looks like.
QRegularExpression pngFilenamePattern();

} // namespace snapvane::CaptureFilename
