// Loupe and lines as the preferences file asks for them.

#include "PointerAidsSuite.h"

#include <X11/keysym.h>

namespace snapvane::testing {

namespace {

/// One desktop with a compositor, so that a session without a loupe needs no picture of it, and an
/// agent for each test.
class PointerAidsPreferences : public PointerAidsSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        options.compositor = Compositor::Picom;
        startDesktop(options);
    }

    // The agents come and go with the tests.
    void SetUp() override {}
    void TearDown() override {
        PointerAidsSuite::TearDown();
        endAgent();
    }

    /// By how much the agent's memory grows from the first selection to the middle of a second one.
    static qint64 growthInSelectionKiB() {
        beginSelection({600, 400});
        cancel();
        const qint64 idle = agent().privateMemoryKiB();
        beginSelection({600, 400});
        pause(std::chrono::milliseconds(200));
        return agent().privateMemoryKiB() - idle;
    }
};

TEST_F(PointerAidsPreferences, WithoutLoupeThereIsNoneAndNoPictureOfTheScreens) {
    // Pictures of both screens, four bytes a pixel.
    constexpr qint64 picturesKiB = 2LL * 1920 * 1080 * 4 / 1024;
    startAgent("showSelectionMagnifier=false\nshowCrosshairLinesWhileCapturing=true\n");
    EXPECT_LT(growthInSelectionKiB(), picturesKiB / 4);
    EXPECT_TRUE(probe().windowsNamed(QStringLiteral("Snapvane Magnifier")).empty());
    EXPECT_TRUE(lines().show({600, 400}));
    injector().moveTo({700, 500});
    EXPECT_TRUE(lines().show({700, 500}));
    EXPECT_TRUE(probe().windowsNamed(QStringLiteral("Snapvane Magnifier")).empty());
    expectVeiledDesktop();
    cancel();
    endAgent();

    // Which is what tells the two apart.
    startAgent(bothOn);
    EXPECT_GT(growthInSelectionKiB(), picturesKiB * 3 / 4);
    cancel();
}

TEST_F(PointerAidsPreferences, WithoutLinesThereIsNoWindowForAny) {
    startAgent("showSelectionMagnifier=true\nshowCrosshairLinesWhileCapturing=false\n");
    beginSelection({600, 400});
    EXPECT_TRUE(loupe().shows({600, 400}, background()));
    injector().moveTo({2500, 500});
    EXPECT_TRUE(loupe().shows({2500, 500}, background()));
    EXPECT_EQ(lines().windowCount(), 0);
    expectVeiledDesktop();
    cancel();
}

TEST_F(PointerAidsPreferences, LoupeIsOnAndLinesAreOffToBeginWith) {
    startAgent("");
    beginSelection({600, 400});
    EXPECT_TRUE(loupe().shows({600, 400}, background()));
    EXPECT_EQ(lines().windowCount(), 0);
    cancel();
}

} // namespace

} // namespace snapvane::testing
