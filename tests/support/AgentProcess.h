#pragma once

#include "ChildProcess.h"
#include "VirtualDesktop.h"

#include <QFileInfo>
#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace snapvane::testing {

struct AgentOptions {
    /// Another build of it than the one that users get; empty for that one.
    QString program;
    /// Set in its environment; an empty value takes the variable away.
    QList<std::pair<QString, QString>> variables;
    bool withoutFileOverrides = false;
    QString tinyDiskOn;
    /// Whether to wait until the program's name is on the session bus.
    bool waitUntilReady = true;
};

/// The program under test, running on a virtual desktop. The destructor asks it to leave and fails
/// the test when it then does not exit with 0, or when a sanitizer has complained. Test thread
/// only.
class AgentProcess {
public:
    explicit AgentProcess(const VirtualDesktop& desktop, const AgentOptions& options = {});
    ~AgentProcess();
    AgentProcess(const AgentProcess&) = delete;
    AgentProcess& operator=(const AgentProcess&) = delete;

    [[nodiscard]] ChildProcess& process() { return m_process; }
    [[nodiscard]] pid_t id() const { return m_process.id(); }
    /// Kills it at once, which the destructor then takes for granted.
    void killHard();
    /// Asks it to leave by SIGTERM and gives how it ended.
    ChildProcess::Exit terminate();

    /// Waits for it to leave without being asked; nothing when it stays.
    std::optional<ChildProcess::Exit>
    waitForEnd(std::chrono::milliseconds limit = std::chrono::seconds(10));
    /// From now on its files end after so many bytes: every further write of theirs fails.
    void limitFileSize(qint64 bytes);

    /// Throws std::runtime_error with the log's end when the name does not appear.
    void waitForBusName();
    /// Calls org.freedesktop.Application.ActivateAction; throws when the call fails.
    void activateAction(const QString& name);

    /// Everything logged so far, or since a mark taken earlier.
    [[nodiscard]] QString log(qsizetype since = 0) const;
    [[nodiscard]] qsizetype logMark() const { return log().size(); }
    bool waitForLogLine(const QString& regularExpression, qsizetype since = 0,
                        std::chrono::milliseconds limit = std::chrono::seconds(5)) const;
    [[nodiscard]] bool loggedError(qsizetype since = 0) const;

    /// Waits until every screen's overlay is viewable and holds the input; throws if it does not.
    void waitForOverlay();
    /// False when some overlay window is still there after the limit.
    bool waitForOverlayGone(std::chrono::milliseconds limit = std::chrono::seconds(3));
    /// How many overlay windows there are, viewable or not.
    [[nodiscard]] int overlayCount() const;

    /// Where it saves unless told otherwise.
    [[nodiscard]] QString pictureFolder() const;
    /// The finished pictures, in order of their names.
    [[nodiscard]] QStringList savedPictures() const;
    /// Everything in the folder, hidden and unfinished files as well.
    [[nodiscard]] QStringList filesInPictureFolder() const;
    void clearPictures() const;
    /// The one picture that appears in the cleared folder; throws with the log's end when none
    /// does.
    QString waitForPicture();
    /// Starts a capture, drags as asked and gives the picture that was saved.
    QImage capture(const QPoint& from, const QPoint& to, int steps = 8);

    [[nodiscard]] qint64 privateMemoryKiB() const;
    [[nodiscard]] int threadCount() const;

private:
    const VirtualDesktop& m_desktop;
    QString m_logFile;
    QString m_busConnection;
    ChildProcess m_process;
    bool m_endExpected = false;
};

} // namespace snapvane::testing
