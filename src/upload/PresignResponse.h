#pragma once

#include "base/LocalizedError.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace snapvane {

/// The answer to a presign request is no JSON, lacks something or holds something of another type.
/// The text says which, and never repeats what the answer holds.
class PresignDecodingError : public LocalizedError {
public:
    using LocalizedError::LocalizedError;
};

/// The service's leave to upload one file, and the link under which it will be found.
struct PresignResponse {
    /// Where the file goes. As the service wrote it, like every text here: nothing is checked.
    QString uploadUrl;
    QString publicUrl;
    QString s3Key;
    QString shortId;
    /// Seconds.
    std::int64_t expiresIn = 0;

    /// Reads one JSON object with these five members. Others are ignored; of several with the same
    /// name the last one counts; a number without a fraction is an integer, however it is written.
    /// Throws PresignDecodingError. Any thread.
    static PresignResponse decoded(const QByteArray& json);
};

} // namespace snapvane
