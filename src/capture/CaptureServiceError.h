#pragma once

#include "base/LocalizedError.h"

namespace snapvane {

/// Why a capture failed; the description is what the user reads.
class CaptureServiceError : public LocalizedError {
public:
    enum class Case {
        captureFailed,
        noDisplays,
        noMatchingDisplay,
        emptySelection,
        pngEncodingFailed
    };

    /// The payload text itself is the description.
    static CaptureServiceError captureFailed(const QString& message);
    static CaptureServiceError noDisplays();
    static CaptureServiceError noMatchingDisplay();
    static CaptureServiceError emptySelection();
    static CaptureServiceError pngEncodingFailed();

    Case errorCase() const { return m_case; }

private:
    CaptureServiceError(Case errorCase, const QString& description)
        : LocalizedError(description), m_case(errorCase) {}

    Case m_case;
};

} // namespace snapvane
