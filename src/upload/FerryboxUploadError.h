#pragma once

#include "base/LocalizedError.h"

namespace snapvane {

/// Why an upload came to nothing, where it is the service's doing or the user's. What goes wrong on
/// the way there is a TransportError.
class FerryboxUploadError : public LocalizedError {
public:
    enum class Kind { PresignFailed, MissingApiKey, BadResponse, UploadFailed, InvalidPublicUrl };

    /// `status` is the HTTP status of the answer.
    static FerryboxUploadError presignFailed(int status);
    static FerryboxUploadError missingAPIKey();
    static FerryboxUploadError badResponse();
    static FerryboxUploadError uploadFailed();
    static FerryboxUploadError invalidPublicURL();

    Kind kind() const { return m_kind; }
    /// The HTTP status of a failed presign; 0 for every other kind.
    int status() const { return m_status; }

private:
    FerryboxUploadError(Kind kind, const QString& description, int status = 0)
        : LocalizedError(description), m_kind(kind), m_status(status) {}

    Kind m_kind;
    int m_status;
};

} // namespace snapvane
