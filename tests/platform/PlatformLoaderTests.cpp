#include "platform/PlatformLoader.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

using Backend = PlatformLoader::Choice::Backend;

/// The environment's word on the platform for one test. There is no display in it.
class PlatformLoaderTest : public ::testing::Test {
public:
    ~PlatformLoaderTest() override {
        qunsetenv("SNAPVANE_PLATFORM");
        qunsetenv("DISPLAY");
    }

protected:
};

} // namespace

TEST_F(PlatformLoaderTest, TakesTheNullPlatformWhenAsked) {
    qputenv("SNAPVANE_PLATFORM", "null");
    const auto choice = PlatformLoader::choose();
    EXPECT_EQ(choice.backend, Backend::Null);
    EXPECT_EQ(choice.qtPlatform, "offscreen");
    EXPECT_EQ(choice.obstacle, QString());
    const auto platform = PlatformLoader::load(choice);
    ASSERT_NE(platform, nullptr);
    EXPECT_EQ(platform->name(), QStringLiteral("null"));
}

TEST_F(PlatformLoaderTest, TakesX11ByItselfAndWhenAsked) {
    for (const bool asked : {false, true}) {
        SCOPED_TRACE(asked);
        if (asked) {
            qputenv("SNAPVANE_PLATFORM", "x11");
        }
        const auto choice = PlatformLoader::choose();
        EXPECT_EQ(choice.backend, Backend::X11);
        EXPECT_EQ(choice.qtPlatform, "xcb");
        EXPECT_EQ(choice.obstacle, QStringLiteral("No display: the variable DISPLAY is not set."));
    }
}

TEST_F(PlatformLoaderTest, NamesADisplayThatCannotBeReached) {
    qputenv("DISPLAY", ":987654");
    EXPECT_EQ(PlatformLoader::choose().obstacle,
              QStringLiteral("No display: the X server :987654 cannot be reached."));
}

TEST_F(PlatformLoaderTest, RefusesPlatformsThatThereAreNot) {
    for (const char* name : {"wayland", "X11", "x11 ", "nonsense %1"}) {
        SCOPED_TRACE(name);
        qputenv("SNAPVANE_PLATFORM", name);
        const auto choice = PlatformLoader::choose();
        EXPECT_EQ(choice.obstacle, QStringLiteral("SNAPVANE_PLATFORM: there is no platform \"") +
                                       QString::fromLatin1(name) +
                                       QStringLiteral("\" here; x11 and null are."));
    }
}

} // namespace snapvane
