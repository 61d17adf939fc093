#include "PostCaptureAskChoiceControllerFixture.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QVariantAnimation>

namespace snapvane {

namespace {

using ::testing::ElementsAre;

class ChoiceFadeTest : public ChoiceControllerFixture {
protected:
    bool isOpaqueSoon() {
        return eventually([this] { return panel().opacity == 1; });
    }
    bool isGoneSoon() {
        return eventually([this] { return !isShown(); });
    }
    /// The opacities that are seen until the condition holds.
    template <typename Condition> std::vector<double> opacitiesUntil(Condition condition) {
        std::vector<double> seen;
        EXPECT_TRUE(eventually([this, condition, &seen] {
            if (isShown()) {
                seen.push_back(panel().opacity);
            }
            return condition();
        }));
        return seen;
    }
};

} // namespace

TEST_F(ChoiceFadeTest, FadesInFromNothing) {
    present();
    EXPECT_EQ(panel().opacity, 0);
    const auto seen = opacitiesUntil([this] { return panel().opacity == 1; });
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_TRUE(std::any_of(seen.begin(), seen.end(), [](double o) { return o > 0.1 && o < 0.9; }));
}

TEST_F(ChoiceFadeTest, TakesAsLongAsStated) {
    QElapsedTimer clock;
    clock.start();
    present();
    ASSERT_NE(qApp->findChild<QVariantAnimation*>(), nullptr);
    EXPECT_EQ(qApp->findChild<QVariantAnimation*>()->duration(), 180);
    ASSERT_TRUE(isOpaqueSoon());
    EXPECT_GE(clock.restart(), 180);
    const auto* fading = qApp->findChild<QVariantAnimation*>();
    EXPECT_EQ(fading, nullptr) << "It is over.";
    m_controller->dismiss();
    fading = qApp->findChild<QVariantAnimation*>();
    ASSERT_NE(fading, nullptr);
    EXPECT_EQ(fading->duration(), 150);
    EXPECT_EQ(fading->endValue().toDouble(), 0);
    clock.restart();
    ASSERT_TRUE(isGoneSoon());
    EXPECT_GE(clock.elapsed(), 150);
}

TEST_F(ChoiceFadeTest, FadesOutToNothing) {
    present();
    ASSERT_TRUE(isOpaqueSoon());
    m_controller->dismiss();
    EXPECT_TRUE(isShown());
    const auto seen = opacitiesUntil([this] { return !isShown(); });
    EXPECT_TRUE(std::is_sorted(seen.rbegin(), seen.rend()));
    EXPECT_TRUE(std::any_of(seen.begin(), seen.end(), [](double o) { return o > 0.1 && o < 0.9; }));
}

TEST_F(ChoiceFadeTest, ADismissalWhileFadingInGoesOnFromThere) {
    present();
    ASSERT_TRUE(eventually([this] { return panel().opacity > 0.2; }));
    const double reached = panel().opacity;
    m_controller->dismiss();
    const auto seen = opacitiesUntil([this] { return !isShown(); });
    EXPECT_LE(*std::max_element(seen.begin(), seen.end()), reached);
}

TEST_F(ChoiceFadeTest, TheActionRunsWhileThePanelFades) {
    present();
    ASSERT_TRUE(isOpaqueSoon());
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    EXPECT_TRUE(isShown());
    EXPECT_THAT(m_events, ElementsAre("disable", "run 3 png"));
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "run 3 png", "enable"));
}

TEST_F(ChoiceFadeTest, APanelPresentedDuringAFadeGoesWithItsEnd) {
    present({{100, 100}, {20, 20}}, "first");
    ASSERT_TRUE(isOpaqueSoon());
    m_controller->dismiss();
    present({{100, 100}, {20, 20}}, "second");
    EXPECT_EQ(m_panels.created, 2);
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "disable", "enable"));
    // Its capture still waits; nothing is shown that could answer for it.
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    EXPECT_THAT(m_events, ElementsAre("disable", "disable", "enable", "run 3 second"));
}

TEST_F(ChoiceFadeTest, APanelPresentedWhileShownStays) {
    present({{100, 100}, {20, 20}}, "first");
    ASSERT_TRUE(isOpaqueSoon());
    present({{100, 100}, {20, 20}}, "second");
    ASSERT_TRUE(isOpaqueSoon());
    settle(250);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(panel().opacity, 1);
}

TEST_F(ChoiceFadeTest, TheShortcutComesBackEvenIfTheControllerIsGone) {
    present();
    m_controller->dismiss();
    m_controller.reset();
    EXPECT_TRUE(eventually([this] { return m_events.size() == 2; }));
    EXPECT_THAT(m_events, ElementsAre("disable", "enable"));
}

TEST_F(ChoiceFadeTest, NothingFadesWhereTheDesktopShowsNoTransparency) {
    m_panels.translucent = false;
    present();
    EXPECT_EQ(panel().opacity, 1);
    m_controller->dismiss();
    EXPECT_EQ(panel().opacity, 1);
    ASSERT_TRUE(isGoneSoon());
}

TEST_F(ChoiceFadeTest, NothingFadesForWhoWantsLessMotion) {
    m_motion.reduced = true;
    present();
    EXPECT_EQ(panel().opacity, 1);
    m_controller->dismiss();
    EXPECT_EQ(panel().opacity, 1);
    ASSERT_TRUE(isGoneSoon());
}

} // namespace snapvane
