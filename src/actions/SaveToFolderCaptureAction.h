#pragma once

#include "actions/CaptureAction.h"

namespace snapvane {

/// Writes the capture's PNG into a folder, under the name that its time gives. The file appears
/// whole or not at all: it is written beside its place, synced and moved there. One of that name is
/// replaced.
class SaveToFolderCaptureAction : public CaptureAction {
public:
    /// `folderPath` is absolute; it is made, with its parents, when it is not there.
    explicit SaveToFolderCaptureAction(QString folderPath) : m_folderPath(std::move(folderPath)) {}

    QString id() const override { return QStringLiteral("save-to-folder"); }
    const QString& folderPath() const { return m_folderPath; }

    /// "Saved to " and the file's name; throws FileError. The file is written off the main thread.
    QCoro::Task<std::optional<QString>> perform(CaptureResult result) override;

private:
    QString m_folderPath;
};

} // namespace snapvane
