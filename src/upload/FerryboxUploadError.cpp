#include "upload/FerryboxUploadError.h"

#include "base/Translation.h"

namespace snapvane {

FerryboxUploadError FerryboxUploadError::presignFailed(int status) {
    return {Kind::PresignFailed, translated("Ferrybox presign failed (HTTP %1).").arg(status),
            status};
}

FerryboxUploadError FerryboxUploadError::missingAPIKey() {
    return {Kind::MissingApiKey, translated("Ferrybox API key is not set. Add it in Settings.")};
}

FerryboxUploadError FerryboxUploadError::badResponse() {
    return {Kind::BadResponse, translated("Unexpected response from Ferrybox.")};
}

FerryboxUploadError FerryboxUploadError::uploadFailed() {
    return {Kind::UploadFailed, translated("Ferrybox upload failed.")};
}

FerryboxUploadError FerryboxUploadError::invalidPublicURL() {
    return {Kind::InvalidPublicUrl, translated("Ferrybox returned an invalid link.")};
}

} // namespace snapvane
