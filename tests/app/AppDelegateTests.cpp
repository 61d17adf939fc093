#include "app/AppDelegateFixture.h"
#include "capture/CaptureShortcut.h"
#include "selection/LogCapture.h"

#include <QApplication>
#include <QWidget>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AppDelegateTest : public testing::DelegateTest {
protected:
    /// What the capture entry shows beside its title.
    QString captureKeys() {
        return entry(StatusMenuAction::CaptureArea).shortcut().toString(QKeySequence::PortableText);
    }
};

const char* const permissionAlert = "alert Screen Recording Permission Required";

TEST_F(AppDelegateTest, BeginsWithoutStatusItem) {
    EXPECT_EQ(delegate->statusItem(), nullptr);
    EXPECT_EQ(delegate->showScreenCenterItem(), nullptr);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(AppDelegateTest, LaunchesInOrder) {
    QString shownAtRegistration;
    platform.hotKeys().onRegistration = [&] {
        ASSERT_NE(delegate->statusItem(), nullptr);
        shownAtRegistration = captureKeys();
    };
    launch();
    EXPECT_THAT(news(), ElementsAre("hot key registered"));
    EXPECT_EQ(shownAtRegistration, QStringLiteral("Ctrl+Shift+P"))
        << "the menu entry shows the shortcut before the shortcut is handled";
    ASSERT_NE(delegate->statusItem(), nullptr);
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
        hadHandler = hasHotKey();
        Q_EMIT platform.screens().changed();
    };
    launch(false);
    EXPECT_TRUE(hadStatusItem);
    EXPECT_TRUE(hadHandler);
    EXPECT_THAT(news(), ElementsAre("hot key registered", permissionAlert))
        << "the screens are observed only after the alert";
    Q_EMIT platform.screens().changed();
    EXPECT_THAT(news(), ElementsAre("lines screens changed"));
}

TEST_F(AppDelegateTest, WithoutPermissionTheAlertComesAtLaunchAndNeverAgain) {
    launch(false);
    EXPECT_THAT(alerts.shown, SizeIs(1));
    (void)news();
    delegate->beginCaptureFromMenu();
    tapShortcut();
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
    tapShortcut();
    EXPECT_TRUE(isSelecting());
    EXPECT_EQ(platform.overlays().menuWaits, 0);
}

TEST_F(AppDelegateTest, TheShortcutActsWhenItIsReleased) {
    launch();
    pressShortcut();
    testing::settle();
    EXPECT_FALSE(isSelecting());
    releaseShortcut();
    EXPECT_TRUE(isSelecting());
}

TEST_F(AppDelegateTest, TheShortcutDuringASelectionStartsAnew) {
    launch();
    tapShortcut();
    tapShortcut();
    EXPECT_TRUE(isSelecting());
    EXPECT_EQ(platform.overlays().opened, 2);
}

TEST_F(AppDelegateTest, TheShortcutHandlerHoldsTheDelegateWeakly) {
    launch();
    delegate.reset();
    (void)news();
    ASSERT_TRUE(hasHotKey()) << "the handler outlives the delegate";
    tapShortcut();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_FALSE(isSelecting());
    Q_EMIT platform.screens().changed();
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(AppDelegateTest, AnOpenMenuSwitchesTheShortcutOff) {
    launch();
    (void)news();
    delegate->menuWillOpen();
    EXPECT_THAT(news(), ElementsAre("hot key unregistered"));
    tapShortcut();
    EXPECT_FALSE(isSelecting());
    delegate->menuDidClose();
    EXPECT_THAT(news(), ElementsAre("hot key registered"));
    tapShortcut();
    EXPECT_TRUE(isSelecting());
}

TEST_F(AppDelegateTest, AnOpenMenuIsNotTheOnlyReasonForAShortcutToBeOff) {
    using Reason = CaptureShortcutSwitch::Reason;
    launch();
    shortcutSwitch.hold(Reason::CaptureIsAskedAbout);
    delegate->menuWillOpen();
    delegate->menuDidClose();
    EXPECT_FALSE(hasHotKey()) << "The question is still open.";
    delegate->menuWillOpen();
    shortcutSwitch.release(Reason::CaptureIsAskedAbout);
    EXPECT_FALSE(hasHotKey()) << "The menu is still open.";
    delegate->menuDidClose();
    EXPECT_TRUE(hasHotKey());
}

TEST_F(AppDelegateTest, TheShortcutStaysOffOnceTheProgramLeaves) {
    using Reason = CaptureShortcutSwitch::Reason;
    launch();
    shortcutSwitch.hold(Reason::CaptureIsAskedAbout);
    delegate->applicationWillTerminate();
    shortcutSwitch.release(Reason::CaptureIsAskedAbout);
    EXPECT_FALSE(hasHotKey());
}

/// While a menu of ours is shown, the program is given the keys that go to it.
TEST_F(AppDelegateTest, KeysInTheShownMenuDoNotStartACapture) {
    launch();
    (void)news();
    QMenu& menu = delegate->statusItem()->menu().menu();
    menu.popup({0, 0});
    EXPECT_THAT(news(), ElementsAre("hot key unregistered"));
    tapShortcut();
    EXPECT_FALSE(isSelecting());
    EXPECT_TRUE(menu.isVisible());
    menu.close();
    EXPECT_THAT(news(), ElementsAre("hot key registered"));
    tapShortcut();
    EXPECT_TRUE(isSelecting());
}

/// Another program may have taken the combination in the meantime, and given it back later.
TEST_F(AppDelegateTest, EachClosingOfTheMenuTriesTheShortcutAgain) {
    platform.hotKeys().heldElsewhere.insert(defaultShortcut);
    launch();
    delegate->menuWillOpen();
    delegate->menuDidClose();
    EXPECT_THAT(news(), ElementsAre("hot key refused", "hot key refused"));
    platform.hotKeys().heldElsewhere.clear();
    delegate->menuWillOpen();
    delegate->menuDidClose();
    EXPECT_THAT(news(), ElementsAre("hot key registered"));
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(AppDelegateTest, TheFirstLaunchStoresTheDefaultShortcut) {
    EXPECT_EQ(storedShortcut(), std::nullopt);
    launch();
    EXPECT_EQ(storedShortcut(), QStringLiteral(R"({"carbonKeyCode":35,"carbonModifiers":4608})"));
}

TEST_F(AppDelegateTest, AClearedShortcutStaysCleared) {
    defaults.set(QStringLiteral("KeyboardShortcuts_captureArea"), false);
    launch();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_EQ(storedShortcut(), QStringLiteral("false"));
    EXPECT_EQ(captureKeys(), QString());
}

TEST_F(AppDelegateTest, TheCaptureEntryShowsTheShortcutAndItsChanges) {
    const KeyboardShortcuts::Name name = makeCaptureAreaName();
    launch();
    EXPECT_EQ(captureKeys(), QStringLiteral("Ctrl+Shift+P"));
    shortcuts.setShortcut(KeyboardShortcuts::Shortcut(KeyboardShortcuts::Key::f5,
                                                      KeyboardShortcuts::ModifierFlags::option),
                          name);
    EXPECT_EQ(captureKeys(), QStringLiteral("Alt+F5"));
    shortcuts.setShortcut(std::nullopt, name);
    EXPECT_EQ(captureKeys(), QString());
    shortcuts.reset({name});
    EXPECT_EQ(captureKeys(), QStringLiteral("Ctrl+Shift+P"));
}

TEST_F(AppDelegateTest, AChangedShortcutStartsTheCaptureInstead) {
    const KeyboardShortcuts::Name name = makeCaptureAreaName();
    launch();
    shortcuts.setShortcut(KeyboardShortcuts::Shortcut::fromCarbon(96, 0x800), name);
    tapShortcut();
    EXPECT_FALSE(isSelecting());
    platform.hotKeys().press({96, 0x800});
    platform.hotKeys().release({96, 0x800});
    EXPECT_TRUE(isSelecting());
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
    EXPECT_THAT(news(), ElementsAre("hot key unregistered"));
    EXPECT_FALSE(hasHotKey());
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
