#include "actions/SaveToFolderCaptureAction.h"

#include "actions/FileError.h"
#include "base/Async.h"
#include "base/AtomicFile.h"
#include "base/Translation.h"
#include "capture/CaptureFilename.h"

#include <QDir>
#include <QFile>

#include <filesystem>

namespace snapvane {

namespace {

void createFolder(const QString& path) {
    std::error_code code;
    const std::filesystem::path folder(QFile::encodeName(path).toStdString());
    std::filesystem::create_directories(folder, code);
    // A path that exists but is no folder is no error to the library.
    if (!code && !std::filesystem::is_directory(folder, code) && !code) {
        code = std::make_error_code(std::errc::not_a_directory);
    }
    if (code) {
        throw FileError(path, code);
    }
}

void writeFile(const QString& path, const QByteArray& bytes) {
    if (const std::error_code error = writeFileAtomically(path, bytes)) {
        throw FileError(path, error);
    }
}

QString save(const QString& folderPath, const QDateTime& capturedAt, const QByteArray& png) {
    createFolder(folderPath);
    QString name = CaptureFilename::pngFilename(capturedAt);
    writeFile(QDir(folderPath).filePath(name), png);
    return name;
}

} // namespace

QCoro::Task<std::optional<QString>> SaveToFolderCaptureAction::perform(CaptureResult result) {
    auto saving = runInBackground([folder = m_folder, time = result.capturedAt,
                                   png = result.pngData] { return save(folder(), time, png); });
    const QString name = co_await saving;
    co_return translated("Saved to %1").arg(name);
}

} // namespace snapvane
