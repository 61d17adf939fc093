#include "platform/Platform.h"

#include "platform/null/NullPlatform.h"

#include <gtest/gtest.h>

#include <csignal>

namespace snapvane {

TEST(Platform, IsTheOneThatWasInstalled) {
    null::NullPlatform platform;
    Platform::install(&platform);
    EXPECT_EQ(&Platform::shared(), &platform);
    Platform::install(nullptr);
}

TEST(PlatformDeathTest, IsNotToBeUsedBeforeItIsInstalled) {
    EXPECT_EXIT(Platform::shared(), ::testing::KilledBySignal(SIGABRT), "Program error: the plat");
}

} // namespace snapvane
