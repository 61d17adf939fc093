#pragma once

#include "base/LocalizedError.h"

#include <cstdint>

namespace snapvane {

/// Why the API key was not stored; the description is what the user reads.
class FerryboxKeychainError : public LocalizedError {
public:
    enum class Case { storeFailed, emptyKey };

    /// `status` is the secret store's, as SecretStore has it.
    static FerryboxKeychainError storeFailed(std::int32_t status);
    static FerryboxKeychainError emptyKey();

    Case errorCase() const { return m_case; }
    /// Of a failed store; 0 for an empty key.
    std::int32_t status() const { return m_status; }

private:
    FerryboxKeychainError(Case errorCase, std::int32_t status, const QString& description)
        : LocalizedError(description), m_case(errorCase), m_status(status) {}

    Case m_case;
    std::int32_t m_status;
};

} // namespace snapvane
