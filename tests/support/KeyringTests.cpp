// The keyring of the tests, on a virtual desktop as the program gets it.

#include "SecretServiceClient.h"
#include "SecretServiceDaemon.h"
#include "VirtualDesktop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace snapvane::testing {

namespace {

TEST(KeyringTest, KeepsAKeyOnAVirtualDesktopUntilItIsLocked) {
    const VirtualDesktop desktop({.windowManager = WindowManager::None});
    const SecretServiceDaemon keyring(desktop.environment(), desktop.folders());
    SecretServiceClient client(desktop.busAddress());
    client.put(SecretServiceClient::keyAttributes(), "key");
    EXPECT_EQ(client.keys(), QList<QByteArray>{"key"});
    client.lockDefaultCollection();
    EXPECT_EQ(client.keys(), QList<QByteArray>());
    EXPECT_THROW(client.put(SecretServiceClient::keyAttributes(), "key"), std::runtime_error);
}

TEST(KeyringTest, IsNoneOnAVirtualDesktopOfItsOwnAccord) {
    const VirtualDesktop desktop({.windowManager = WindowManager::None});
    EXPECT_THROW(SecretServiceClient(desktop.busAddress()), std::runtime_error);
}

} // namespace

} // namespace snapvane::testing
