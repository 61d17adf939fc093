#include "app/AppDelegateFixture.h"
#include "selection/LogCapture.h"

#include <QApplication>
#include <QWidget>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using AppDelegateTest = testing::DelegateTest;

const char* const permissionAlert = "alert Screen Recording Permission Required";

TEST_F(AppDelegateTest, BeginsWithoutStatusItem) {
    EXPECT_EQ(delegate->statusItem(), nullptr);
    EXPECT_EQ(delegate->showScreenCenterItem(), nullptr);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(AppDelegateTest, LaunchesInOrder) {
    launch();
    EXPECT_THAT(news(), ElementsAre("shortcut bind", "shortcut handler"));
    ASSERT_NE(delegate->statusItem(), nullptr);
    EXPECT_EQ(shortcut.bound, &entry(StatusMenuAction::CaptureArea));
    EXPECT_EQ(delegate->showScreenCenterItem(), &entry(StatusMenuAction::ToggleCrosshairLines));
    EXPECT_TRUE(permission.hasScreenCaptureAccess);
    Q_EMIT platform.screens().changed();
    EXPECT_THAT(news(), ElementsAre("lines screens changed"));
}

/// The alert is modal: what comes after it waits for the answer, what comes before is there.
TEST_F(AppDelegateTest, TheRestOfTheLaunchWaitsForTheAlert) {
    bool hadStatusItem = false;
    bool hadHandler = false;
    alerts.whileShown = [&] {
        hadStatusItem = delegate->statusItem() != nullptr;
        hadHandler = static_cast<bool>(shortcut.handler);
        Q_EMIT platform.screens().changed();
    };
    launch(false);
    EXPECT_TRUE(hadStatusItem);
    EXPECT_TRUE(hadHandler);
    EXPECT_THAT(news(), ElementsAre("shortcut bind", "shortcut handler", permissionAlert))
        << "the screens are observed only after the alert";
    Q_EMIT platform.screens().changed();
    EXPECT_THAT(news(), ElementsAre("lines screens changed"));
}

TEST_F(AppDelegateTest, WithoutPermissionTheAlertComesAtLaunchAndNeverAgain) {
    launch(false);
    EXPECT_THAT(alerts.shown, SizeIs(1));
    (void)news();
    delegate->beginCaptureFromMenu();
    shortcut.handler();
    entry(StatusMenuAction::CaptureArea).trigger();
    testing::settle();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isSelecting());
}

TEST_F(AppDelegateTest, TheLaunchAlertIsForced) {
    permission.presentPermissionAlertIfNeeded(false);
    launch(false);
    EXPECT_THAT(alerts.shown, SizeIs(2));
}

TEST_F(AppDelegateTest, PermissionGrantedLaterTakesARestart) {
    launch(false);
    platform.capturer().access = true;
    (void)news();
    delegate->beginCaptureFromMenu();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isSelecting());
}

TEST_F(AppDelegateTest, PermissionIsNotAskedForAgainWhenItWasThere) {
    launch();
    platform.capturer().access = false;
    delegate->beginCaptureFromMenu();
    EXPECT_TRUE(isSelecting());
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(AppDelegateTest, BeforeTheLaunchTheGateShowsTheAlertOnce) {
    delegate->beginCaptureFromMenu();
    delegate->beginCaptureFromMenu();
    EXPECT_THAT(news(), ElementsAre(permissionAlert));
    EXPECT_FALSE(isSelecting());
}

TEST_F(AppDelegateTest, TheMenuStartsACaptureThatWaitsForMenus) {
    launch();
    entry(StatusMenuAction::CaptureArea).trigger();
    EXPECT_TRUE(isSelecting());
    EXPECT_EQ(platform.overlays().menuWaits, 1);
}

TEST_F(AppDelegateTest, TheShortcutStartsACaptureAtOnce) {
    launch();
    shortcut.handler();
    EXPECT_TRUE(isSelecting());
    EXPECT_EQ(platform.overlays().menuWaits, 0);
}

TEST_F(AppDelegateTest, TheShortcutHandlerHoldsTheDelegateWeakly) {
    launch();
    delegate.reset();
    (void)news();
    shortcut.handler();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isSelecting());
    Q_EMIT platform.screens().changed();
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(AppDelegateTest, AnOpenMenuSwitchesTheShortcutOff) {
    launch();
    (void)news();
    delegate->menuWillOpen();
    EXPECT_THAT(news(), ElementsAre("shortcut disable"));
    delegate->menuDidClose();
    EXPECT_THAT(news(), ElementsAre("shortcut enable"));

    QMenu& menu = delegate->statusItem()->menu().menu();
    menu.popup({0, 0});
    EXPECT_THAT(news(), ElementsAre("shortcut disable"));
    menu.close();
    EXPECT_THAT(news(), ElementsAre("shortcut enable"));
}

TEST_F(AppDelegateTest, OpeningTheMenuRefreshesTheCheckMark) {
    launch();
    EXPECT_FALSE(delegate->showScreenCenterItem()->isChecked());
    preferences.setShowCrosshairLinesWhileCapturing(true);
    EXPECT_FALSE(delegate->showScreenCenterItem()->isChecked());
    delegate->menuWillOpen();
    EXPECT_TRUE(delegate->showScreenCenterItem()->isChecked());
    preferences.setShowCrosshairLinesWhileCapturing(false);
    delegate->menuWillOpen();
    EXPECT_FALSE(delegate->showScreenCenterItem()->isChecked());
}

TEST_F(AppDelegateTest, MenuEventsBeforeTheLaunchAreNoTrouble) {
    delegate->menuWillOpen();
    delegate->menuDidClose();
    delegate->toggleShowScreenCenter();
    EXPECT_TRUE(preferences.showCrosshairLinesWhileCapturing());
}

TEST_F(AppDelegateTest, TheCheckMarkStartsFromThePreference) {
    preferences.setShowCrosshairLinesWhileCapturing(true);
    launch();
    EXPECT_TRUE(delegate->showScreenCenterItem()->isChecked());
}

TEST_F(AppDelegateTest, SwitchingTheLinesOnWithoutASessionShowsNone) {
    launch();
    (void)news();
    delegate->toggleShowScreenCenter();
    EXPECT_THAT(news(), ElementsAre("lines hide"));
    EXPECT_TRUE(preferences.showCrosshairLinesWhileCapturing());
    EXPECT_TRUE(delegate->showScreenCenterItem()->isChecked());
    const UserDefaults stored(folder.filePath(QStringLiteral("Snapvane.conf")));
    EXPECT_TRUE(stored.boolean(QStringLiteral("showCrosshairLinesWhileCapturing")));
}

TEST_F(AppDelegateTest, SwitchingTheLinesOnDuringASessionShowsThem) {
    launch();
    (void)news();
    lines.setCaptureSessionActive(true);
    platform.screens().pointer = {7, 8};
    delegate->toggleShowScreenCenter();
    EXPECT_THAT(news(), ElementsAre("lines rebuild (active)", "lines cursor (active)"));
    EXPECT_EQ(lines.cursor, (GlobalPoint{7, 8}));
    EXPECT_TRUE(delegate->showScreenCenterItem()->isChecked());
}

TEST_F(AppDelegateTest, SwitchingTheLinesOffHidesThem) {
    preferences.setShowCrosshairLinesWhileCapturing(true);
    launch();
    (void)news();
    delegate->toggleShowScreenCenter();
    EXPECT_THAT(news(), ElementsAre("lines hide"));
    EXPECT_FALSE(preferences.showCrosshairLinesWhileCapturing());
    EXPECT_FALSE(delegate->showScreenCenterItem()->isChecked());

    preferences.setShowCrosshairLinesWhileCapturing(true);
    lines.setCaptureSessionActive(true);
    delegate->toggleShowScreenCenter();
    EXPECT_THAT(news(), ElementsAre("lines hide (active)"));
}

/// The entry toggles itself when it is chosen; the mark must not end up the other way round.
TEST_F(AppDelegateTest, ChoosingTheEntryFlipsPreferenceAndMark) {
    launch();
    for (const bool expected : {true, false, true}) {
        entry(StatusMenuAction::ToggleCrosshairLines).trigger();
        EXPECT_EQ(preferences.showCrosshairLinesWhileCapturing(), expected);
        EXPECT_EQ(delegate->showScreenCenterItem()->isChecked(), expected);
    }
}

/// With a mark that is out of date, the preference decides.
TEST_F(AppDelegateTest, TheMarkFollowsThePreferenceNotItself) {
    launch();
    preferences.setShowCrosshairLinesWhileCapturing(true);
    entry(StatusMenuAction::ToggleCrosshairLines).trigger();
    EXPECT_FALSE(preferences.showCrosshairLinesWhileCapturing());
    EXPECT_FALSE(delegate->showScreenCenterItem()->isChecked());
}

TEST_F(AppDelegateTest, TerminationSwitchesTheShortcutOff) {
    launch();
    (void)news();
    delegate->applicationWillTerminate();
    EXPECT_THAT(news(), ElementsAre("shortcut disable"));
}

TEST_F(AppDelegateTest, NoWindowIsVisibleAfterTheLaunch) {
    launch();
    testing::settle();
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        EXPECT_FALSE(widget->isVisible()) << widget->metaObject()->className();
    }
}

TEST_F(AppDelegateTest, QuitEndsTheEventLoop) {
    launch();
    QTimer::singleShot(0, delegate.get(), [this] { entry(StatusMenuAction::Quit).trigger(); });
    // Were it not to quit, this would fail the test instead of hanging it.
    QTimer::singleShot(5000, delegate.get(), [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(AppDelegateTest, SettingsAndAboutAreHarmless) {
    launch();
    (void)news();
    entry(StatusMenuAction::OpenSettings).trigger();
    entry(StatusMenuAction::OpenAbout).trigger();
    testing::settle();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isSelecting());
}

} // namespace

} // namespace snapvane
