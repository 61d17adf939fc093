#pragma once

#include "ChildProcess.h"
#include "DesktopFolders.h"

#include <QProcessEnvironment>

#include <memory>

namespace snapvane::testing {

/// Who answers when the keyring asks for its password: nobody is there to be asked; the user gives
/// it; the user declines; the question stays open.
enum class KeyringUser { Absent, Unlocks, Refuses, Ignores };

/// A real keyring on the session bus that `environment` names, with its files below `folders`: a
/// virtual desktop's, or those of a BareBus. The program under test finds it by the bus alone. The
/// constructor returns when it answers, with the default collection unlocked. Test thread only.
class SecretServiceDaemon {
public:
    SecretServiceDaemon(const QProcessEnvironment& environment, const DesktopFolders& folders,
                        KeyringUser user = KeyringUser::Absent);
    ~SecretServiceDaemon();
    SecretServiceDaemon(const SecretServiceDaemon&) = delete;
    SecretServiceDaemon& operator=(const SecretServiceDaemon&) = delete;

    /// Whether a question to the user is open.
    [[nodiscard]] bool isAsking() const;
    /// Kills it; what was stored stays on the disk for the next one.
    void kill();
    /// Lets it hang, or go on.
    void freeze();
    void thaw();

private:
    void startPrompter(KeyringUser user);
    void startKeyring();

    QProcessEnvironment m_environment;
    QString m_prompterOutput;
    const DesktopFolders& m_folders;
    std::unique_ptr<ChildProcess> m_prompter;
    std::unique_ptr<ChildProcess> m_keyring;
};

} // namespace snapvane::testing
