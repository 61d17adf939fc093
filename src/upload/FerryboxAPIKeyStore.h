#pragma once

#include <QString>

#include <optional>

namespace snapvane {

class SecretStore;

/// The user's API key for the upload service: one item of the secret store, and nowhere else. The
/// operations wait for the store, and so perhaps for the user; callers on the main thread go
/// through FerryboxAPIKeyTasks. Any other thread.
namespace FerryboxAPIKeyStore {

/// The key as it was stored, which the caller wipes; nothing when there is none, or none that could
/// be read: that is no failure.
std::optional<QString> loadKey(SecretStore& store);

/// Replaces the key by `key` without the white space and line breaks around it. Throws
/// FerryboxKeychainError: for an empty key, which leaves the stored one as it is, and when the
/// store fails, by which time the old key is gone.
void saveKey(SecretStore& store, const QString& key);

/// Afterwards there is no key, unless the store failed; it does not tell.
void deleteKey(SecretStore& store);

} // namespace FerryboxAPIKeyStore

} // namespace snapvane
