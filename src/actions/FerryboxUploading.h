#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QUrl>

namespace snapvane {

/// Uploads pictures. Main thread, which it does not block.
class FerryboxUploading {
public:
    virtual ~FerryboxUploading() = default;

    /// Gives the public link; throws LocalizedError. The uploader must outlive the task.
    virtual QCoro::Task<QUrl> uploadPNG(QByteArray data, QString filename) = 0;
};

} // namespace snapvane
