#pragma once

#include "KeyboardShortcuts/Name.h"
#include "app/StatusItem.h"
#include "selection/CaptureTrigger.h"

#include <QObject>

#include <memory>
#include <optional>

namespace KeyboardShortcuts {
class NamedShortcuts;
} // namespace KeyboardShortcuts

namespace snapvane {

class AppPreferences;
class CaptureCoordinator;
class CaptureShortcutSwitch;
class GuideLines;
class Platform;
class ScreenCapturePermissionManager;

/// The shell: builds the status item when the program has started, ties the shortcut, the menu and
/// the bus to what they start, and takes the shortcut down at the end. Made by the entry. Main
/// thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// What the delegate works with; everything must outlive it.
    struct Collaborators {
        Platform& platform;
        CaptureCoordinator& captureCoordinator;
        ScreenCapturePermissionManager& permission;
        AppPreferences& preferences;
        GuideLines& guideLines;
        KeyboardShortcuts::NamedShortcuts& shortcuts;
        CaptureShortcutSwitch& shortcutSwitch;
    };

    explicit AppDelegate(const Collaborators& collaborators);
    ~AppDelegate() override;

    /// The start-up sequence. Shows the permission alert, and waits for its answer, when the screen
    /// may not be read.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    void menuWillOpen();
    void menuDidClose();

    /// The capture gate: starts a capture when the screen may be read, else shows the permission
    /// alert, unless it was shown before.
    void beginCapture(CaptureTrigger trigger);
    void beginCaptureFromMenu() { beginCapture(CaptureTrigger::Menu); }
    void toggleShowScreenCenter();
    void openSettings();
    void openAbout();
    void quit();

    /// Nothing until the start-up sequence has run.
    StatusItem* statusItem() { return m_statusItem.get(); }
    /// The entry "Show crosshair lines while capturing", once there is a menu.
    QAction* showScreenCenterItem() { return m_showScreenCenterItem; }

private:
    /// Made when it is first needed.
    const KeyboardShortcuts::Name& captureArea();
    void setupStatusItem();
    void registerGlobalShortcut();
    void checkPermission();
    void observeScreens();
    void perform(StatusMenuAction action);

    Collaborators m_with;
    std::unique_ptr<StatusItem> m_statusItem;
    QAction* m_showScreenCenterItem = nullptr;
    std::optional<KeyboardShortcuts::Name> m_captureArea;
};

} // namespace snapvane
