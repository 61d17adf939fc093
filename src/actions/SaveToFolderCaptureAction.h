#pragma once

#include "actions/CaptureAction.h"

#include <functional>

namespace snapvane {

/// Writes the capture's PNG into a folder, under the name that its time gives. The file appears
/// whole or not at all: it is written beside its place, synced and moved there. One of that name is
/// replaced.
class SaveToFolderCaptureAction : public CaptureAction {
public:
    /// Gives an absolute path. Called off the main thread, since already to look at a folder may
    /// take long on a disk that hangs.
    using Folder = std::function<QString()>;

    /// The folder is made, with its parents, when it is not there.
    explicit SaveToFolderCaptureAction(Folder folder) : m_folder(std::move(folder)) {}

    QString id() const override { return QStringLiteral("save-to-folder"); }

    /// "Saved to " and the file's name; throws FileError. The file is written off the main thread.
    QCoro::Task<std::optional<QString>> perform(CaptureResult result) override;

private:
    Folder m_folder;
};

} // namespace snapvane
