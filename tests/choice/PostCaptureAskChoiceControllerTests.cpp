#include "PostCaptureAskChoiceControllerFixture.h"

#include "choice/ChoiceThumbnail.h"
#include "choice/PostCaptureChoiceDimView.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ChoiceControllerTest : public ChoiceControllerFixture {
protected:
    ChoiceControllerTest() { m_motion.reduced = true; }

    bool isGoneSoon() {
        return eventually([this] { return !isShown(); });
    }
};

GlobalRect around(double x, double y) {
    return {{x - 5, y - 5}, {10, 10}};
}

} // namespace

TEST_F(ChoiceControllerTest, CoversTheScreenOfTheCapture) {
    present();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(panel().options.name, u"Snapvane Choice"_s);
    EXPECT_EQ(panel().options.level, 1000);
    EXPECT_EQ(panel().content->size(), QSize(1920, 1080));
    EXPECT_EQ(panel().raised, 1);
    EXPECT_EQ(panel().opacity, 1);
}

TEST_F(ChoiceControllerTest, ShowsTheCardOfThatCapture) {
    m_preferences.setEnabledActions(
        {AfterCaptureAction::copyToClipboard, AfterCaptureAction::saveToFolder});
    present({{0, 0}, {720, 280}});
    EXPECT_EQ(card().rows()[3]->contents().helpText, u"Saved defaults (copy, save)"_s);
    EXPECT_EQ(card().thumbnail().sizeHint(), QSize(360, 140));
    EXPECT_EQ(QRect(card().mapTo(panel().content.get(), QPoint(0, 0)), card().size()).center(),
              panel().content->rect().center());
}

TEST_F(ChoiceControllerTest, TheShortcutIsOffBeforeThePanelIsSeen) {
    present();
    EXPECT_THAT(m_events, ElementsAre("disable"));
}

TEST_F(ChoiceControllerTest, TakesTheFocusAtOnceAndInTheNextTurn) {
    present();
    EXPECT_EQ(panel().focused, 1);
    EXPECT_TRUE(eventually([this] { return panel().focused == 2; }));
    settle(20);
    EXPECT_EQ(panel().focused, 2);
}

TEST_F(ChoiceControllerTest, APanelThatGoesBeforeTheNextTurnIsNotAskedForTheFocus) {
    present();
    m_controller->close();
    present({{100, 100}, {20, 20}}, "second");
    settle(20);
    EXPECT_EQ(panel().focused, 2) << "once by itself, once in the next turn";
}

TEST_F(ChoiceControllerTest, CommitHandsTheCaptureOnAndCloses) {
    present();
    m_controller->commit(PostCaptureMenuAction::saveToFolder);
    EXPECT_THAT(m_events, ElementsAre("disable", "run 2 png"));
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "run 2 png", "enable"));
}

TEST_F(ChoiceControllerTest, EveryActionTakesTheSameWay) {
    for (const auto action :
         {PostCaptureMenuAction::runSavedDefaults, PostCaptureMenuAction::uploadFerrybox,
          PostCaptureMenuAction::saveToFolder, PostCaptureMenuAction::copyToClipboard,
          PostCaptureMenuAction::cancel}) {
        m_events.clear();
        present();
        m_controller->commit(action);
        ASSERT_TRUE(isGoneSoon());
        EXPECT_THAT(m_events,
                    ElementsAre("disable",
                                "run " + std::to_string(static_cast<int>(action)) + " png",
                                "enable"));
    }
}

TEST_F(ChoiceControllerTest, ASecondCommitRunsNothing) {
    present();
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    m_controller->commit(PostCaptureMenuAction::saveToFolder);
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "run 3 png", "enable"));
}

TEST_F(ChoiceControllerTest, DismissDiscardsTheCapture) {
    present();
    m_controller->dismiss();
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "enable"));
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    EXPECT_TRUE(eventually([this] { return m_events.size() == 3; }));
    EXPECT_THAT(m_events, ElementsAre("disable", "enable", "enable")) << "There is nothing to run.";
}

TEST_F(ChoiceControllerTest, ASecondDismissIsIgnored) {
    present();
    m_controller->dismiss();
    m_controller->dismiss();
    ASSERT_TRUE(isGoneSoon());
    settle(20);
    EXPECT_THAT(m_events, ElementsAre("disable", "enable"));
}

TEST_F(ChoiceControllerTest, TheRowsOfTheCardChoose) {
    const char* const expected[] = {"run 3 png", "run 1 png", "run 2 png", "run 0 png"};
    for (std::size_t i = 0; i < 4; ++i) {
        m_events.clear();
        present();
        card().rows()[i]->click();
        ASSERT_TRUE(isGoneSoon());
        EXPECT_THAT(m_events, ElementsAre("disable", expected[i], "enable"));
    }
}

TEST_F(ChoiceControllerTest, TheLastRowDiscards) {
    present();
    card().rows()[4]->click();
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "enable"));
}

TEST_F(ChoiceControllerTest, KeysOfTheViewChoose) {
    present();
    QKeyEvent one(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier, 18, 0, 0, u"1"_s);
    QApplication::sendEvent(panel().content.get(), &one);
    EXPECT_THAT(m_events, ElementsAre("disable", "run 3 png"));
    ASSERT_TRUE(isGoneSoon());
}

TEST_F(ChoiceControllerTest, ANewCaptureTakesThePlaceOfTheOneBefore) {
    present({{100, 100}, {20, 20}}, "first");
    present({{100, 100}, {20, 20}}, "second");
    EXPECT_EQ(m_panels.screenPanels.size(), 1U);
    EXPECT_EQ(m_panels.created, 2);
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "disable", "run 3 second", "enable"));
}

TEST_F(ChoiceControllerTest, WithoutAScreenNothingIsShown) {
    m_screens.screens.clear();
    present();
    EXPECT_FALSE(isShown());
    EXPECT_THAT(m_events, IsEmpty());
}

TEST_F(ChoiceControllerTest, TheShortcutComesBackWhereNothingCanBeShownAnyMore) {
    present();
    m_screens.screens.clear();
    present({{100, 100}, {20, 20}}, "second");
    EXPECT_FALSE(isShown());
    EXPECT_THAT(m_events, ElementsAre("disable", "enable"));
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    EXPECT_THAT(m_events, Contains("run 3 second")) << "The capture still waits.";
}

TEST_F(ChoiceControllerTest, OpensOnTheScreenThatHoldsTheMiddle) {
    setTwoScreens();
    present(around(10, 10));
    EXPECT_EQ(panel().screen.name, u"Left"_s);
    present({{1900, 900}, {200, 100}});
    EXPECT_EQ(panel().screen.name, u"Right"_s) << "It spans both, its middle is on the right.";
    EXPECT_EQ(panel().content->size(), QSize(640, 360));
}

TEST_F(ChoiceControllerTest, AMiddleInAGapGoesToTheFirstScreenTouched) {
    setTwoScreens();
    // Below the second screen and right of the first.
    present({{1900, 300}, {200, 500}});
    EXPECT_EQ(panel().screen.name, u"Left"_s);
    present({{1930, 500}, {400, 300}});
    EXPECT_EQ(panel().screen.name, u"Right"_s);
}

TEST_F(ChoiceControllerTest, ACaptureOfNoScreenGoesToTheMainOne) {
    setTwoScreens();
    present({{9000, 9000}, {10, 10}});
    EXPECT_EQ(panel().screen.name, u"Left"_s);
}

TEST_F(ChoiceControllerTest, CardsAreMadeToFitALowScreen) {
    setTwoScreens();
    present(around(1930, 900));
    EXPECT_TRUE(card().thumbnail().isHidden());
}

TEST_F(ChoiceControllerTest, AsksAnewWhereItsScreenHasChanged) {
    setTwoScreens();
    present(around(1930, 900));
    m_screens.screens.pop_back();
    Q_EMIT m_screens.changed();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(panel().screen.name, u"Left"_s);
    EXPECT_EQ(panel().raised, 1);
    EXPECT_EQ(panel().opacity, 1);
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "run 3 png", "enable"));
}

TEST_F(ChoiceControllerTest, ComesBackToItsScreen) {
    setTwoScreens();
    const ScreenList both = m_screens.screens;
    present(around(1930, 900));
    m_screens.screens.pop_back();
    Q_EMIT m_screens.changed();
    EXPECT_EQ(panel().screen.name, u"Left"_s);
    m_screens.screens = both;
    Q_EMIT m_screens.changed();
    EXPECT_EQ(panel().screen.name, u"Right"_s);
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 3);
}

TEST_F(ChoiceControllerTest, KeepsThePanelWhereOnlyOthersHaveChanged) {
    setTwoScreens();
    present(around(10, 10));
    m_screens.screens.pop_back();
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 1);
}

TEST_F(ChoiceControllerTest, KeepsThePanelWhereGlobalPointsHaveMoved) {
    setTwoScreens();
    present(around(1930, 900));
    // The left one, from whose corner all points are measured, has become higher.
    m_screens.screens =
        ScreenMapping::layOut({{1, QStringLiteral("Left"), {{0, 0}, {1920, 2160}}, 1, {}},
                               {2, QStringLiteral("Right"), {{1920, 0}, {1280, 720}}, 2, {}}});
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 1);
}

TEST_F(ChoiceControllerTest, AsksAnewWithoutTheKeyboardThatSomebodyElseTook) {
    present();
    panel().holdsFocus = false;
    panel().options.outdated();
    ASSERT_EQ(m_panels.created, 2);
    settle(20);
    EXPECT_EQ(panel().focused, 0);
}

TEST_F(ChoiceControllerTest, AsksAnewLaterWhereThereWasNoScreenForIt) {
    present();
    const ScreenList screens = m_screens.screens;
    m_screens.screens.clear();
    panel().options.outdated();
    EXPECT_EQ(m_panels.created, 1);
    m_screens.screens = screens;
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 2);
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 2);
}

TEST_F(ChoiceControllerTest, KeepsThePanelWhileThereIsNoScreenAtAll) {
    present();
    m_screens.screens.clear();
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 1);
    EXPECT_TRUE(isShown());
}

TEST_F(ChoiceControllerTest, AsksAnewWhenTransparencyIsShownInAnotherWay) {
    present();
    const auto outdated = panel().options.outdated;
    m_panels.translucent = false;
    outdated();
    ASSERT_EQ(m_panels.created, 2);
    EXPECT_FALSE(panel().backdrop().isNull());
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    ASSERT_TRUE(isGoneSoon());
    EXPECT_THAT(m_events, ElementsAre("disable", "run 3 png", "enable"));
}

TEST_F(ChoiceControllerTest, DoesNotAskAnewOnceItIsAnswered) {
    present();
    const auto outdated = panel().options.outdated;
    m_controller->dismiss();
    outdated();
    Q_EMIT m_screens.changed();
    EXPECT_EQ(m_panels.created, 1);
    ASSERT_TRUE(isGoneSoon());
    outdated();
    EXPECT_FALSE(isShown());
}

TEST_F(ChoiceControllerTest, ClosingDropsPanelAndCapture) {
    present();
    m_controller->close();
    EXPECT_FALSE(isShown());
    m_controller->commit(PostCaptureMenuAction::copyToClipboard);
    EXPECT_THAT(m_events, ElementsAre("disable"));
}

} // namespace snapvane
