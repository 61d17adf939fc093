#include "app/LaunchAtLoginManager.h"

#include "platform/PlatformError.h"
#include "platform/null/NullPlatform.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

TEST(LaunchAtLoginManager, RegistersAndUnregisters) {
    null::NullLoginItem item;
    LaunchAtLoginManager::setEnabled(true, item);
    EXPECT_TRUE(item.isRegistered());
    LaunchAtLoginManager::setEnabled(true, item);
    EXPECT_TRUE(item.isRegistered());
    LaunchAtLoginManager::setEnabled(false, item);
    EXPECT_FALSE(item.isRegistered());
}

TEST(LaunchAtLoginManager, UsesThePlatformsItem) {
    null::NullPlatform platform;
    Platform::install(&platform);
    LaunchAtLoginManager::setEnabled(true);
    EXPECT_TRUE(platform.loginItem().isRegistered());
    LaunchAtLoginManager::setEnabled(false);
    EXPECT_FALSE(platform.loginItem().isRegistered());
    Platform::install(nullptr);
}

TEST(LaunchAtLoginManager, PassesFailuresThroughUnchanged) {
    null::NullLoginItem item;
    item.failure = std::make_exception_ptr(PlatformError(QStringLiteral("The disk is full.")));
    for (const bool enabled : {true, false}) {
        try {
            LaunchAtLoginManager::setEnabled(enabled, item);
            FAIL() << "nothing was thrown";
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.localizedDescription().toStdString(), "The disk is full.");
        }
    }
}

} // namespace

} // namespace snapvane
