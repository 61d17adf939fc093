#pragma once

#include "actions/CaptureAction.h"

namespace snapvane {

class Pasteboard;

/// Puts the picture on the clipboard.
class CopyToClipboardCaptureAction : public CaptureAction {
public:
    /// `pasteboard` must outlive the action.
    explicit CopyToClipboardCaptureAction(Pasteboard& pasteboard) : m_pasteboard(pasteboard) {}

    QString id() const override { return QStringLiteral("copy-to-clipboard"); }

    /// "Image copied"; never throws.
    QCoro::Task<std::optional<QString>> perform(CaptureResult result) override;

private:
    Pasteboard& m_pasteboard;
};

} // namespace snapvane
