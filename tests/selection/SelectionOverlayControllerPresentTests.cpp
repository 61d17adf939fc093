// How a session begins, and what becomes of one that is replaced or given up before it is shown.

#include "selection/SelectionOverlayControllerFixture.h"

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using SelectionOverlayControllerTest = testing::ControllerTest;

TEST_F(SelectionOverlayControllerTest, BeginsWithNothing) {
    EXPECT_EQ(controller->presentGeneration(), 0);
    EXPECT_EQ(controller->overlayWindow(), nullptr);
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, WithoutLoupeAndLinesTheOverlayIsThereAtOnce) {
    present();
    EXPECT_THAT(news(),
                ElementsAre("lines hide", "loupe dismiss", "overlay open", "overlay front"));
    EXPECT_TRUE(isShowing());
    EXPECT_NE(controller->overlayWindow(), nullptr);
    EXPECT_TRUE(lines.captureSessionActive());
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, WithTheLoupeTheOverlayWaitsForTheSnapshots) {
    holdSnapshots();
    screens.pointer = {12, 34};
    present();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "snapshots"));
    EXPECT_FALSE(isShowing());
    EXPECT_FALSE(lines.captureSessionActive());

    snapshots.gate.open();
    EXPECT_THAT(news(),
                ElementsAre("loupe prepare 1", "overlay open", "overlay front", "loupe update"));
    EXPECT_THAT(controller->displaySnapshots(), SizeIs(1));
    EXPECT_EQ(magnifier.point, (GlobalPoint{12, 34}));
    EXPECT_EQ(magnifier.size, GlobalSize());
}

/// What stands under the veil is fixed when the overlay is opened, where the desktop knows no
/// transparency: the lines must not be on the screen before.
TEST_F(SelectionOverlayControllerTest, LinesAreBuiltHiddenAndShownAtThePointer) {
    preferences.setShowCrosshairLinesWhileCapturing(true);
    screens.pointer = {55, 66};
    present();
    EXPECT_THAT(news(),
                ElementsAre("lines hide", "loupe dismiss", "overlay open", "lines rebuild (active)",
                            "lines hide (active)", "lines cursor (active)", "overlay front"));
    EXPECT_EQ(lines.cursor, (GlobalPoint{55, 66}));
}

TEST_F(SelectionOverlayControllerTest, LinesAndLoupeKeepTheirOrder) {
    preferences.setShowSelectionMagnifier(true);
    preferences.setShowCrosshairLinesWhileCapturing(true);
    present();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "snapshots", "loupe prepare 1",
                                    "overlay open", "lines rebuild (active)", "lines hide (active)",
                                    "lines cursor (active)", "overlay front", "loupe update"));
}

TEST_F(SelectionOverlayControllerTest, NoSnapshotsMeanNoLoupe) {
    preferences.setShowSelectionMagnifier(true);
    snapshots.list.clear();
    present();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "snapshots", "overlay open",
                                    "overlay front"));
}

TEST_F(SelectionOverlayControllerTest, FailingSnapshotsMeanNoLoupe) {
    holdSnapshots();
    present();
    snapshots.gate.open(0, false);
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "snapshots", "overlay open",
                                    "overlay front"));
    EXPECT_TRUE(isShowing());
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, TheOverlayHasTheDimAmountOfTheMoment) {
    preferences.setSelectionDimAmount(0.45);
    present();
    EXPECT_EQ(host.session->options.dimAmount, 0.45);
    EXPECT_EQ(host.session->options.level, 1000);
    preferences.setSelectionDimAmount(0.1);
    present();
    EXPECT_EQ(host.session->options.dimAmount, 0.1);
}

TEST_F(SelectionOverlayControllerTest, GenerationCountsPresentsAndDismissals) {
    present();
    EXPECT_EQ(controller->presentGeneration(), 2);
    controller->dismiss();
    EXPECT_EQ(controller->presentGeneration(), 3);
    controller->dismiss();
    EXPECT_EQ(controller->presentGeneration(), 4);
    present();
    EXPECT_EQ(controller->presentGeneration(), 6);
    pressEscape();
    EXPECT_EQ(controller->presentGeneration(), 7);
}

TEST_F(SelectionOverlayControllerTest, ASecondPresentReplacesAShownSession) {
    bool firstCalled = false;
    controller->present([&](std::optional<GlobalRect>) { firstCalled = true; });
    (void)news();
    present();
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "overlay close concealed",
                                    "overlay open", "overlay front"));
    pressEscape();
    EXPECT_FALSE(firstCalled);
    EXPECT_THAT(results, ElementsAre(std::nullopt));
}

TEST_F(SelectionOverlayControllerTest, ASecondPresentReplacesOneThatWaits) {
    holdSnapshots();
    bool firstCalled = false;
    controller->present([&](std::optional<GlobalRect>) { firstCalled = true; });
    present();
    ASSERT_EQ(snapshots.gate.waits(), 2U);
    snapshots.gate.open(0);
    EXPECT_FALSE(isShowing()) << "the first session's snapshots are for nobody";
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
    snapshots.gate.open(1);
    EXPECT_TRUE(isShowing());
    EXPECT_EQ(host.opened, 1);
    pressEscape();
    EXPECT_FALSE(firstCalled);
    EXPECT_THAT(results, SizeIs(1));
}

TEST_F(SelectionOverlayControllerTest, LateSnapshotsDoNotDisturbTheSessionThatReplacedThem) {
    holdSnapshots();
    present();
    preferences.setShowSelectionMagnifier(false);
    present();
    ASSERT_TRUE(isShowing());
    (void)news();
    snapshots.gate.open(0);
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_EQ(host.opened, 1);
}

TEST_F(SelectionOverlayControllerTest, SnapshotsAfterADismissalShowNothing) {
    holdSnapshots();
    present();
    controller->dismiss();
    (void)news();
    snapshots.gate.open();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isShowing());
    EXPECT_THAT(controller->displaySnapshots(), IsEmpty());
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, AMenusSessionWaitsForMenusBeforeAnythingElse) {
    holdSnapshots();
    host.holdMenus = true;
    present(CaptureTrigger::Menu);
    EXPECT_THAT(news(), ElementsAre("lines hide", "loupe dismiss", "menus"));
    host.menus.open();
    EXPECT_THAT(news(), ElementsAre("snapshots"));
    snapshots.gate.open();
    EXPECT_TRUE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, AShortcutsSessionDoesNotWaitForMenus) {
    host.holdMenus = true;
    present(CaptureTrigger::Shortcut);
    EXPECT_EQ(host.menuWaits, 0);
    EXPECT_TRUE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, ADismissalWhileMenusCloseTakesNoSnapshots) {
    holdSnapshots();
    host.holdMenus = true;
    present(CaptureTrigger::Menu);
    controller->dismiss();
    (void)news();
    host.menus.open();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isShowing());
}

TEST_F(SelectionOverlayControllerTest, TheControllerMayGoWhileSnapshotsAreTaken) {
    holdSnapshots();
    present();
    controller.reset();
    snapshots.gate.open();
    EXPECT_FALSE(isShowing());
    EXPECT_THAT(results, IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, TheControllerMayGoWhileMenusClose) {
    holdSnapshots();
    host.holdMenus = true;
    present(CaptureTrigger::Menu);
    controller.reset();
    (void)news();
    host.menus.open();
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(SelectionOverlayControllerTest, TheControllerTakesItsOverlayWithIt) {
    present();
    controller.reset();
    EXPECT_FALSE(isShowing());
    EXPECT_THAT(results, IsEmpty());
}

/// Fails before there is anything to wait for.
class SnapshotsThatFailAtOnce : public SnapshotSource {
public:
    QCoro::Task<DisplaySnapshotList> captureAllDisplays() override {
        throw std::runtime_error("no snapshots at all");
    }
};

TEST_F(SelectionOverlayControllerTest, SnapshotsThatFailAtOnceMeanNoLoupe) {
    preferences.setShowSelectionMagnifier(true);
    SnapshotsThatFailAtOnce failing;
    SelectionOverlayController other({preferences, screens, host, lines, magnifier, failing});
    other.present(recorded());
    EXPECT_THAT(news(),
                ElementsAre("lines hide", "loupe dismiss", "overlay open", "overlay front"));
    other.dismiss();
}

} // namespace

} // namespace snapvane
