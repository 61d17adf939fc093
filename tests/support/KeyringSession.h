#pragma once

#include "BareBus.h"
#include "DesktopFolders.h"
#include "SecretServiceClient.h"
#include "SecretServiceDaemon.h"

#include <memory>

namespace snapvane::testing {

/// A session with a bus and a keyring of its own, and nothing else; this very process takes the bus
/// for its session's. For tests that reach the keyring without the whole program. Test thread only.
class KeyringSession {
public:
    KeyringSession() { qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit()); }
    ~KeyringSession() { qunsetenv("DBUS_SESSION_BUS_ADDRESS"); }
    KeyringSession(const KeyringSession&) = delete;
    KeyringSession& operator=(const KeyringSession&) = delete;

    /// There is no keyring before the first call; a later call replaces it.
    void startKeyring(KeyringUser user = KeyringUser::Absent) {
        keyring.reset();
        keyring = std::make_unique<SecretServiceDaemon>(bus.environment(), folders, user);
    }
    /// What another program sees now.
    [[nodiscard]] SecretServiceClient client() const { return SecretServiceClient(bus.address()); }

    DesktopFolders folders;
    BareBus bus{folders};
    std::unique_ptr<SecretServiceDaemon> keyring;
};

} // namespace snapvane::testing
