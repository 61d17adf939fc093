#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <sys/types.h>

namespace snapvane::testing {

/// A process that a test started and owns: output goes to a file, never to a pipe that a left-over
/// child could hold open, and it dies with the test program, however that ends. The destructor ends
/// it. Main thread of the test only.
class ChildProcess {
public:
    struct Spec {
        QString program;
        QStringList arguments;
        QProcessEnvironment environment;
        /// Takes standard output and error, appended.
        QString outputFile;
        /// A file descriptor that the child keeps under its number; -1 for none.
        int inheritedDescriptor = -1;
        /// Folder permissions bind the child even where the tests run as root.
        bool withoutFileOverrides = false;
        /// Where not empty, the child sees a tiny file system of its own on this existing folder.
        QString tinyDiskOn;
    };

    /// How a process ended: one of the two is meaningful.
    struct Exit {
        int code = 0;
        int signal = 0;
    };

    /// Throws std::runtime_error when there is no such program.
    explicit ChildProcess(const Spec& spec);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const { return m_pid; }
    [[nodiscard]] bool isRunning();
    std::optional<Exit> waitForExit(std::chrono::milliseconds limit);
    void sendSignal(int number);
    /// Asks it to leave, kills it when it does not, and reaps it.
    Exit end(std::chrono::milliseconds patience = std::chrono::seconds(2));

private:
    void reap();

    pid_t m_pid = -1;
    std::optional<Exit> m_exit;
};

} // namespace snapvane::testing
