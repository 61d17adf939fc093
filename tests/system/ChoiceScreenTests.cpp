// On which screen the user is asked about a capture, and how exactly it is covered.

#include "ChoiceSuite.h"
#include "NoticeBystander.h"
#include "PictureCompare.h"
#include "ScreenGrab.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class ChoiceScreens : public ChoiceSuite {
protected:
    static constexpr QSize screenSize = {1280, 800};
    static constexpr QRect onTheLeft = {100, 100, 200, 100};
    static constexpr QRect onTheRight = {1700, 100, 200, 100};

    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        options.screenSize = screenSize;
        startDesktop(options);
    }

    /// Checks that the user is asked on that screen and nothing has changed elsewhere.
    void expectAskedOn(const QRect& screen, const QRect& selection) {
        const QImage before = grabSettledScreen(desktop().connection(), desktop().rect());
        const WindowInfo shown = ask(selection);
        EXPECT_EQ(shown.rect, screen);
        const ChoiceCard card = choice().waitForCard(screen);
        const QImage glass = grabScreen(desktop().connection(), desktop().rect());
        EXPECT_EQ(pixelsNotDimmed(before, glass, besideTheCard(screen, card)), 0);
        for (const QRect& other : QRegion(desktop().rect()) - screen) {
            EXPECT_TRUE(samePicture(before.copy(other), glass.copy(other), u"choice-elsewhere"_s));
        }
    }
};

TEST_F(ChoiceScreens, CaptureOnTheLeft) {
    startAskingAgent();
    expectAskedOn(desktop().screenRect(0), onTheLeft);
}

TEST_F(ChoiceScreens, CaptureOnTheRight) {
    startAskingAgent();
    expectAskedOn(desktop().screenRect(1), onTheRight);
}

TEST_F(ChoiceScreens, CaptureAcrossTheBorderBelongsWhereItsCentreIs) {
    startAskingAgent();
    expectAskedOn(desktop().screenRect(0), {1100, 100, 300, 100});
    injector().tapKey(XK_Escape);
    ASSERT_TRUE(choice().waitUntilGone());
    expectAskedOn(desktop().screenRect(1), {1200, 100, 300, 100});
}

TEST_F(ChoiceScreens, KeysAndRowsWorkOnTheRight) {
    startAskingAgent();
    ask(onTheRight);
    click(choice().waitForCard(desktop().screenRect(1)).row(ChoiceRow::Copy));
    EXPECT_EQ(waitForOutcome(), (ChoiceOutcome{true, 0}));
    ASSERT_TRUE(choice().waitUntilGone());
    ask(onTheRight);
    injector().tapKey(XK_3);
    EXPECT_EQ(QImage(waitForPicture()).size(), onTheRight.size());
}

TEST_F(ChoiceScreens, EachCaptureIsAskedAboutOnItsOwnScreen) {
    startAskingAgent();
    for (const auto& [index, selection] : {std::pair(1, onTheRight), std::pair(0, onTheLeft)}) {
        EXPECT_EQ(ask(selection).rect, desktop().screenRect(index));
        injector().tapKey(XK_Escape);
        ASSERT_TRUE(choice().waitUntilGone());
    }
}

/// Between the screens there is a strip that belongs to neither.
class ChoiceScreensApart : public ChoiceScreens {
protected:
    static constexpr QRect left = {0, 0, 1000, 800};
    static constexpr QRect right = {1560, 0, 1000, 800};

    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screenSize = {2560, 800};
        startDesktop(options);
        setMonitor(u"L"_s, left, u"screen"_s);
        setMonitor(u"R"_s, right, u"none"_s);
    }

    static void setMonitor(const QString& name, const QRect& rect, const QString& output) {
        desktop().run(u"xrandr"_s, {u"--setmonitor"_s, name,
                                    u"%1/508x%2/286+%3+%4"_s.arg(rect.width())
                                        .arg(rect.height())
                                        .arg(rect.x())
                                        .arg(rect.y()),
                                    output});
    }
};

TEST_F(ChoiceScreensApart, CentreBetweenThemMeansTheFirstOneTouched) {
    startAskingAgent();
    expectAskedOn(left, {900, 100, 800, 100});
    injector().tapKey(XK_Escape);
    ASSERT_TRUE(choice().waitUntilGone());
    expectAskedOn(right, {1200, 100, 450, 100});
}

/// Too low for the card with its thumbnail at full height.
class ChoiceOnASmallScreen : public ChoiceSuite {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screenSize = {640, 480};
        startDesktop(options);
    }
};

TEST_F(ChoiceOnASmallScreen, EveryRowIsOnTheScreen) {
    startAskingAgent();
    ask();
    const ChoiceCard shown = card();
    EXPECT_TRUE(desktop().rect().contains(shown.rect));
    click(shown.row(ChoiceRow::Cancel));
    expectDiscarded();
}

/// At a scale by which the screen's size is no whole number of points.
class ChoiceScales : public ChoiceScreens, public ::testing::WithParamInterface<double> {
protected:
    static void SetUpTestSuite() { startScreens(Compositor::None); }
    static void startScreens(Compositor compositor) {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        options.screenSize = {1279, 1199};
        options.compositor = compositor;
        startDesktop(options);
    }

    void SetUp() override {
        ChoiceScreens::SetUp();
        const QString scale = QString::number(GetParam());
        AgentOptions options;
        options.variables = {{u"QT_SCREEN_SCALE_FACTORS"_s, scale + u';' + scale}};
        startAskingAgent("saveToFolder", options);
    }

    void expectCoveredExactly(int index, const QRect& selection) {
        const QRect screen = desktop().screenRect(index);
        const QImage before = grabSettledScreen(desktop().connection(), desktop().rect());
        const WindowInfo shown = ask(selection);
        EXPECT_EQ(shown.rect.topLeft(), screen.topLeft());
        const ChoiceCard card = choice().waitForCard(screen, GetParam());
        EXPECT_LE(std::abs(card.rect.center().x() - screen.center().x()), GetParam());
        EXPECT_LE(std::abs(card.rect.center().y() - screen.center().y()), GetParam());
        const QImage glass = grabScreen(desktop().connection(), desktop().rect());
        EXPECT_EQ(pixelsNotDimmed(before, glass, besideTheCard(screen, card, GetParam())), 0);
        const QRect other = desktop().screenRect(1 - index);
        EXPECT_TRUE(samePicture(before.copy(other), glass.copy(other), u"choice-scale"_s));
    }
};

TEST_P(ChoiceScales, LeftScreenIsCoveredToItsLastPixel) {
    expectCoveredExactly(0, onTheLeft);
}

TEST_P(ChoiceScales, RightScreenIsCoveredToItsLastPixel) {
    expectCoveredExactly(1, {1700, 100, 300, 200});
}

TEST_P(ChoiceScales, ClicksOnTheOtherScreensFirstColumnGoThere) {
    NoticeBystander there(desktop().display(), NoticeBystander::Kind::OverrideRedirect,
                          {desktop().screenRect(1).left(), 600, 30, 30});
    ask(onTheLeft);
    injector().click({desktop().screenRect(1).left(), 610});
    EXPECT_EQ(there.takeClicks(), 1);
    injector().click({desktop().screenRect(0).right(), 610});
    EXPECT_EQ(there.takeClicks(), 0);
}

TEST_P(ChoiceScales, RowsWork) {
    ask(onTheLeft);
    const ChoiceCard card = choice().waitForCard(desktop().screenRect(0), GetParam());
    click(card.row(ChoiceRow::Save));
    EXPECT_EQ(QImage(waitForPicture()).size(), onTheLeft.size());
}

class ChoiceScalesComposited : public ChoiceScales {
protected:
    static void SetUpTestSuite() { startScreens(Compositor::Picom); }
};

TEST_P(ChoiceScalesComposited, BothScreensAreCoveredToTheirLastPixel) {
    expectCoveredExactly(0, onTheLeft);
    close({"Escape", XK_Escape});
    expectCoveredExactly(1, {1700, 100, 300, 200});
}

std::string percentOf(const ::testing::TestParamInfo<double>& scale) {
    return "Percent" + std::to_string(std::lround(100 * scale.param));
}

INSTANTIATE_TEST_SUITE_P(Factors, ChoiceScales, ::testing::Values(1.5, 1.75, 2.0), percentOf);
INSTANTIATE_TEST_SUITE_P(Factors, ChoiceScalesComposited, ::testing::Values(1.75), percentOf);

} // namespace

} // namespace snapvane::testing
