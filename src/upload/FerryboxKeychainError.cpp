#include "upload/FerryboxKeychainError.h"

#include "base/Translation.h"

namespace snapvane {

FerryboxKeychainError FerryboxKeychainError::storeFailed(std::int32_t status) {
    const QString description =
        translated("Could not store the API key in Keychain (status %1).").arg(status);
    return {Case::storeFailed, status, description};
}

FerryboxKeychainError FerryboxKeychainError::emptyKey() {
    return {Case::emptyKey, 0, translated("The API key cannot be empty.")};
}

} // namespace snapvane
