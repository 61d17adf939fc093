#pragma once

#include "actions/CaptureAction.h"

namespace snapvane {

class FerryboxUploading;
class Pasteboard;

/// Uploads the picture and puts its public link on the clipboard.
class FerryboxUploadCaptureAction : public CaptureAction {
public:
    /// Both must outlive the action.
    FerryboxUploadCaptureAction(FerryboxUploading& uploader, Pasteboard& pasteboard)
        : m_uploader(uploader), m_pasteboard(pasteboard) {}

    QString id() const override { return QStringLiteral("ferrybox-upload"); }

    /// "Link copied"; throws what the uploader threw.
    QCoro::Task<std::optional<QString>> perform(CaptureResult result) override;

private:
    FerryboxUploading& m_uploader;
    Pasteboard& m_pasteboard;
};

} // namespace snapvane
