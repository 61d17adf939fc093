#include "actions/CapturePreferences.h"

#include "base/AppIdentity.h"
#include "base/Translation.h"
#include "base/UserDefaults.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace snapvane {

namespace {

const QString enabledActionsKey = QStringLiteral("afterCaptureEnabledActions");
const QString askMeKey = QStringLiteral("askMeAfterCapture");
// An earlier version knew one action at a time; what it stored is only ever read.
const QString legacyModeKey = QStringLiteral("afterCaptureMode");
const QString legacyAskMe = QStringLiteral("askMe");
const QString saveFolderKey = QStringLiteral("saveFolderSecurityBookmark");
const QString saveFolderDisplayPathKey = QStringLiteral("saveFolderDisplayPath");

AfterCaptureActions migrateLegacyMode(const QString& mode) {
    // Asking the user was a mode of its own; it and unknown modes leave what is the default now.
    return {afterCaptureActionOfRawValue(mode).value_or(AfterCaptureAction::saveToFolder)};
}

AfterCaptureActions loadEnabledActions(const UserDefaults& defaults) {
    if (defaults.contains(enabledActionsKey)) {
        AfterCaptureActions actions;
        for (const QString& name :
             defaults.stringArray(enabledActionsKey).value_or(QStringList())) {
            if (const auto action = afterCaptureActionOfRawValue(name)) {
                actions.insert(*action);
            }
        }
        return actions;
    }
    return migrateLegacyMode(defaults.string(legacyModeKey).value_or(QString()));
}

bool loadAskMe(const UserDefaults& defaults) {
    return defaults.contains(askMeKey) ? defaults.boolean(askMeKey)
                                       : defaults.string(legacyModeKey) == legacyAskMe;
}

bool isFolder(const QString& path) {
    return QDir::isAbsolutePath(path) && QFileInfo(path).isDir();
}

} // namespace

CapturePreferences::CapturePreferences(UserDefaults& defaults)
    : m_defaults(defaults), m_enabledActions(loadEnabledActions(defaults)),
      m_askMeAfterCapture(loadAskMe(defaults)),
      m_saveFolderDisplayPath(
          defaults.string(saveFolderDisplayPathKey).value_or(defaultSaveFolder())) {}

CapturePreferences& CapturePreferences::shared() {
    static CapturePreferences preferences(UserDefaults::standard());
    return preferences;
}

void CapturePreferences::setEnabledActions(const AfterCaptureActions& actions) {
    Q_EMIT objectWillChange();
    m_enabledActions = actions;
    persistEnabledActions();
}

void CapturePreferences::setEnabled(AfterCaptureAction action, bool enabled) {
    AfterCaptureActions actions = m_enabledActions;
    if (enabled) {
        actions.insert(action);
    } else {
        actions.erase(action);
    }
    setEnabledActions(actions);
}

void CapturePreferences::setAskMeAfterCapture(bool ask) {
    Q_EMIT objectWillChange();
    m_askMeAfterCapture = ask;
    m_defaults.set(askMeKey, ask);
}

void CapturePreferences::setSaveFolderDisplayPath(const QString& path) {
    Q_EMIT objectWillChange();
    m_saveFolderDisplayPath = path;
}

void CapturePreferences::setSaveFolder(const QString& path) {
    if (isFolder(path)) {
        m_defaults.set(saveFolderKey, path);
    }
    setSaveFolderDisplayPath(path);
    m_defaults.set(saveFolderDisplayPathKey, path);
}

QString CapturePreferences::resolvedSaveFolder() const {
    return saveFolderResolver()();
}

std::function<QString()> CapturePreferences::saveFolderResolver() const {
    return [chosen = m_defaults.string(saveFolderKey), otherwise = defaultSaveFolder()] {
        if (chosen && isFolder(*chosen)) {
            return *chosen;
        }
        // A failure shows when something is saved there.
        QDir().mkpath(otherwise);
        return otherwise;
    };
}

QStringList CapturePreferences::saveFolders() const {
    QStringList folders = {defaultSaveFolder()};
    if (const auto chosen = m_defaults.string(saveFolderKey);
        chosen && *chosen != folders.first()) {
        folders.prepend(*chosen);
    }
    return folders;
}

QString CapturePreferences::defaultSaveFolder() {
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QDir parent(pictures.isEmpty() ? QDir::homePath() : pictures);
    return parent.filePath(QLatin1String(productName));
}

QString CapturePreferences::savedDefaultsMenuTitle() const {
    QStringList words;
    for (const AfterCaptureAction action : allAfterCaptureActions) {
        if (m_enabledActions.contains(action)) {
            words += titleWord(action);
        }
    }
    if (words.isEmpty()) {
        return translated("Saved defaults (none selected)");
    }
    return translated("Saved defaults (%1)").arg(words.join(QStringLiteral(", ")));
}

void CapturePreferences::persistEnabledActions() {
    QStringList names;
    for (const AfterCaptureAction action : m_enabledActions) {
        names += rawValue(action);
    }
    std::ranges::sort(names);
    m_defaults.set(enabledActionsKey, names);
}

} // namespace snapvane
