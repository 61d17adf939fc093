#include "app/AppDelegate.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "KeyboardShortcuts/MenuItemShortcut.h"
#include "app/CaptureCoordinator.h"
#include "app/CaptureShortcutSwitch.h"
#include "capture/CaptureShortcut.h"
#include "capture/ScreenCapturePermissionManager.h"
#include "platform/Capturer.h"
#include "platform/Platform.h"
#include "platform/Screens.h"
#include "platform/TrayHost.h"
#include "selection/AppPreferences.h"
#include "selection/GuideLines.h"

#include <QCoreApplication>

namespace snapvane {

AppDelegate::AppDelegate(const Collaborators& collaborators) : m_with(collaborators) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    setupStatusItem();
    registerGlobalShortcut();
    checkPermission();
    observeScreens();
}

void AppDelegate::applicationWillTerminate() {
    if (m_statusItem) {
        // A menu that counts as closed from now on must not switch the shortcut on again.
        m_statusItem->menu().tracking().disconnect(this);
    }
    m_with.shortcutSwitch.hold(CaptureShortcutSwitch::Reason::ProgramIsLeaving);
}

void AppDelegate::menuWillOpen() {
    m_with.shortcutSwitch.hold(CaptureShortcutSwitch::Reason::MenuIsOpen);
    if (m_showScreenCenterItem != nullptr) {
        m_showScreenCenterItem->setChecked(m_with.preferences.showCrosshairLinesWhileCapturing());
    }
}

void AppDelegate::menuDidClose() {
    m_with.shortcutSwitch.release(CaptureShortcutSwitch::Reason::MenuIsOpen);
}

void AppDelegate::beginCapture(CaptureTrigger trigger) {
    if (m_with.permission.hasScreenCaptureAccess) {
        m_with.captureCoordinator.beginAreaCapture(trigger);
    } else {
        m_with.permission.presentPermissionAlertIfNeeded(false);
    }
}

void AppDelegate::toggleShowScreenCenter() {
    const bool old = m_with.preferences.showCrosshairLinesWhileCapturing();
    m_with.preferences.setShowCrosshairLinesWhileCapturing(!old);
    if (old || !m_with.guideLines.captureSessionActive()) {
        m_with.guideLines.hideOverlays();
    } else {
        m_with.guideLines.rebuildOverlays();
        m_with.guideLines.updateCursor(m_with.platform.screens().pointerLocation());
    }
    if (m_showScreenCenterItem != nullptr) {
        m_showScreenCenterItem->setChecked(!old);
    }
}

void AppDelegate::openSettings() {}

void AppDelegate::openAbout() {}

void AppDelegate::quit() {
    QCoreApplication::quit();
}

const KeyboardShortcuts::Name& AppDelegate::captureArea() {
    if (!m_captureArea) {
        m_captureArea = makeCaptureAreaName();
    }
    return *m_captureArea;
}

void AppDelegate::setupStatusItem() {
    m_statusItem = std::make_unique<StatusItem>(
        m_with.platform.trayHost(), [this](StatusMenuAction action) { perform(action); });
    StatusMenu& menu = m_statusItem->menu();
    KeyboardShortcuts::setShortcut(menu.action(StatusMenuAction::CaptureArea), captureArea(),
                                   m_with.shortcuts, m_with.platform.keyboardLayout());
    m_showScreenCenterItem = &menu.action(StatusMenuAction::ToggleCrosshairLines);
    m_showScreenCenterItem->setChecked(m_with.preferences.showCrosshairLinesWhileCapturing());
    connect(&menu.tracking(), &MenuTracking::willOpen, this, &AppDelegate::menuWillOpen);
    connect(&menu.tracking(), &MenuTracking::didClose, this, &AppDelegate::menuDidClose);
}

void AppDelegate::registerGlobalShortcut() {
    const QPointer<AppDelegate> self(this);
    m_with.shortcuts.onKeyUp(captureArea(), [self] {
        if (self) {
            self->beginCapture(CaptureTrigger::Shortcut);
        }
    });
}

void AppDelegate::checkPermission() {
    m_with.permission.hasScreenCaptureAccess = m_with.platform.capturer().preflightAccess();
    if (!m_with.permission.hasScreenCaptureAccess) {
        m_with.permission.presentPermissionAlertIfNeeded(true);
    }
}

void AppDelegate::observeScreens() {
    GuideLines* lines = &m_with.guideLines;
    connect(&m_with.platform.screens(), &Screens::changed, this,
            [lines] { lines->screenParametersChanged(); });
}

void AppDelegate::perform(StatusMenuAction action) {
    switch (action) {
    case StatusMenuAction::CaptureArea:
        beginCaptureFromMenu();
        break;
    case StatusMenuAction::ToggleCrosshairLines:
        toggleShowScreenCenter();
        break;
    case StatusMenuAction::OpenSettings:
        openSettings();
        break;
    case StatusMenuAction::OpenAbout:
        openAbout();
        break;
    case StatusMenuAction::Quit:
        quit();
        break;
    }
}

} // namespace snapvane
