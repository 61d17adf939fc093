#pragma once

#include "actions/AfterCaptureAction.h"

#include <QObject>
#include <QString>

#include <functional>

namespace snapvane {

class UserDefaults;

/// What the user has chosen to happen after a capture. Read once from the store when the object is
/// made, which writes nothing; each change is announced, then stored here and written to the store
/// at once. No operation reports an error. Main thread.
class CapturePreferences : public QObject {
    Q_OBJECT

public:
    explicit CapturePreferences(UserDefaults& defaults);

    static CapturePreferences& shared();

    /// What runs after each capture; may be empty.
    const AfterCaptureActions& enabledActions() const { return m_enabledActions; }
    void setEnabledActions(const AfterCaptureActions& actions);
    void setEnabled(AfterCaptureAction action, bool enabled);

    /// When true, a capture asks the user instead of running the enabled actions.
    bool askMeAfterCapture() const { return m_askMeAfterCapture; }
    void setAskMeAfterCapture(bool ask);

    /// The chosen folder as a label; the folder itself is `resolvedSaveFolder`.
    const QString& saveFolderDisplayPath() const { return m_saveFolderDisplayPath; }
    /// Changes the label alone, and does not store it.
    void setSaveFolderDisplayPath(const QString& path);

    /// Chooses the folder for saved captures. One that is not there only changes the label: what is
    /// saved goes where it went before.
    void setSaveFolder(const QString& path);
    /// The chosen folder while it is there, else the default one, which is made where that is
    /// possible. An absolute path.
    QString resolvedSaveFolder() const;
    /// The same for the folder that is chosen now, to be called on any thread: looking at a folder
    /// may take long on a disk that hangs.
    std::function<QString()> saveFolderResolver() const;

    /// Where captures may have been saved: the chosen folder, there or not, and the default one.
    QStringList saveFolders() const;

    /// "Snapvane" in the user's pictures folder, or in the home folder when there is none. Nothing
    /// is created.
    static QString defaultSaveFolder();

    /// The title under which the enabled actions are offered together, for the user.
    QString savedDefaultsMenuTitle() const;

Q_SIGNALS:
    /// A property is about to change; it still has its old value.
    void objectWillChange();

private:
    void persistEnabledActions();

    UserDefaults& m_defaults;
    AfterCaptureActions m_enabledActions;
    bool m_askMeAfterCapture;
    QString m_saveFolderDisplayPath;
};

} // namespace snapvane
