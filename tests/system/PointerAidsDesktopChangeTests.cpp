// Screens and compositors that come or go during a selection with loupe and lines.

#include "PointerAidsSuite.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType> class ScreenChange : public FlavouredPointerAids<FlavourType> {
protected:
    void waitForRestart(qsizetype since) {
        require("the session to begin anew", [&] {
            return this->agent().log(since).contains(u"desktop changed during a selection"_s);
        });
        this->agent().waitForOverlay();
    }
};

using WithFading = ::testing::Types<Flavour<Compositor::None>, Flavour<Compositor::PicomFading>>;

TYPED_TEST_SUITE(ScreenChange, WithFading, FlavourNames);

TYPED_TEST(ScreenChange, ADragIsDroppedWhenAScreenGoes) {
    this->beginSelection({2000, 300});
    this->injector().dragTo({2000, 300}, {1400, 500});
    this->desktop().removeRightScreen();
    this->waitForRestart(this->logAtStart);
    this->injector().release();
    this->injector().moveTo({640, 360});
    this->expectAidsAt({640, 360});
    EXPECT_TRUE(this->agent().filesInPictureFolder().isEmpty());
    const qsizetype mark = this->agent().logMark();
    this->desktop().addRightScreen();
    this->waitForRestart(mark);
    this->cancel();
    EXPECT_TRUE(this->agent().filesInPictureFolder().isEmpty());
}

TYPED_TEST(ScreenChange, UnpluggingTheScreenUnderThePointerLeavesAWorkingSelection) {
    const QPoint onRight(2000, 300);
    this->beginSelection(onRight);
    this->expectAidsAt(onRight);
    this->desktop().removeRightScreen();
    this->waitForRestart(this->logAtStart);
    // Wherever the pointer is now, what follows it is on the screen that is left.
    const QRect leftScreen = this->desktop().screenRect(0);
    EXPECT_TRUE(waitUntil(
        [&] {
            const auto loupeRect = this->loupe().window();
            const auto lineRects = this->lines().windows();
            return loupeRect && leftScreen.contains(*loupeRect) && lineRects.size() == 2 &&
                   std::ranges::all_of(
                       lineRects, [&](const QRect& line) { return leftScreen.contains(line); });
        },
        std::chrono::seconds(3)));
    this->injector().moveTo({600, 500});
    this->expectAidsAt({600, 500});
    this->expectExactDrag({300, 200}, {700, 500}, {300, 200, 400, 300}, this->name("unplugged"));

    this->agent().clearPictures();
    this->beginSelection({640, 360});
    this->expectAidsAt({640, 360});
    const qsizetype mark = this->agent().logMark();
    this->desktop().addRightScreen();
    this->waitForRestart(mark);
    this->expectAidsAt({640, 360});
    this->injector().moveTo(onRight);
    this->expectAidsAt(onRight);
    this->expectVeiledDesktop();
    this->expectExactDrag({1900, 200}, {2300, 500}, {1900, 200, 400, 300}, this->name("plugged"));
}

class CompositorChange : public PointerAidsSuite {
protected:
    static void SetUpTestSuite() {
        startTwoScreens(Compositor::None);
        startAgent();
    }

    void waitForRestart(qsizetype since) {
        ASSERT_TRUE(agent().waitForLogLine(u"Compositing was turned on or off"_s, since));
        ASSERT_TRUE(agent().waitForLogLine(u"desktop changed during a selection"_s, since));
        agent().waitForOverlay();
    }
};

TEST_F(CompositorChange, LoupeAndLinesStandOnTheVeiledDesktopWhatever) {
    beginSelection({640, 360});
    expectAidsAt({640, 360});
    desktop().startCompositor(Compositor::PicomFading);
    waitForRestart(logAtStart);
    expectAidsAt({640, 360});
    expectVeiledDesktop();
    injector().moveTo({1400, 100});
    expectAidsAt({1400, 100});
    const qsizetype composited = agent().logMark();
    desktop().stopCompositor();
    waitForRestart(composited);
    expectAidsAt({1400, 100});
    expectVeiledDesktop();
    injector().moveTo({200, 600});
    expectAidsAt({200, 600});
    expectExactDrag({600, 200}, {200, 500}, {200, 200, 400, 300}, u"pointer-aids-compositor"_s);
}

} // namespace

} // namespace snapvane::testing
