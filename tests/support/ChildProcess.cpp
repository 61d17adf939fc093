#include "ChildProcess.h"

#include "PrivateMount.h"
#include "Wait.h"

#include <QByteArrayList>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/capability.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace snapvane::testing {

namespace {

/// Everything the child needs between fork and exec, made before the fork.
struct Launch {
    QByteArray program;
    QByteArrayList argumentTexts;
    QByteArrayList environmentTexts;
    QByteArray outputFile;
    QByteArray tinyDiskOn;
    std::vector<char*> arguments;
    std::vector<char*> environment;
};

std::vector<char*> pointersTo(QByteArrayList& texts) {
    std::vector<char*> pointers;
    for (QByteArray& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

QString findProgram(const QString& name) {
    if (name.contains(u'/')) {
        return name;
    }
    QString path = QStandardPaths::findExecutable(name);
    if (path.isEmpty()) {
        throw std::runtime_error("not installed: " + name.toStdString());
    }
    return path;
}

void fill(Launch& launch, const ChildProcess::Spec& spec) {
    launch.program = findProgram(spec.program).toLocal8Bit();
    launch.argumentTexts << launch.program;
    for (const QString& argument : spec.arguments) {
        launch.argumentTexts << argument.toLocal8Bit();
    }
    for (const QString& entry : spec.environment.toStringList()) {
        launch.environmentTexts << entry.toLocal8Bit();
    }
    launch.outputFile = spec.outputFile.toLocal8Bit();
    launch.tinyDiskOn = spec.tinyDiskOn.toLocal8Bit();
    launch.arguments = pointersTo(launch.argumentTexts);
    launch.environment = pointersTo(launch.environmentTexts);
}

[[noreturn]] void giveUp(const char* step) {
    std::fprintf(stderr, "cannot start: %s: %s\n", step, std::strerror(errno));
    std::fflush(stderr);
    _exit(127);
}

void redirectOutput(const char* file) {
    const int output = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (output < 0 || input < 0) {
        giveUp(file);
    }
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
}

void dropFileOverrides() {
    // Refused to ordinary users, who have nothing to drop.
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
    prctl(PR_CAPBSET_DROP, CAP_FOWNER, 0, 0, 0);
}

[[noreturn]] void becomeProgram(const ChildProcess::Spec& spec, Launch& launch) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // A file that may not grow is to end in a failed write, not in the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    redirectOutput(launch.outputFile.constData());
    if (spec.inheritedDescriptor >= 0) {
        fcntl(spec.inheritedDescriptor, F_SETFD, 0);
    }
    if (!launch.tinyDiskOn.isEmpty() && !mountTinyDisk(launch.tinyDiskOn.constData())) {
        giveUp("mount");
    }
    if (spec.withoutFileOverrides) {
        dropFileOverrides();
    }
    execve(launch.program.constData(), launch.arguments.data(), launch.environment.data());
    giveUp(launch.program.constData());
}

} // namespace

ChildProcess::ChildProcess(const Spec& spec) {
    Launch launch;
    fill(launch, spec);
    m_pid = fork();
    if (m_pid < 0) {
        throw std::runtime_error("fork failed");
    }
    if (m_pid == 0) {
        becomeProgram(spec, launch);
    }
}

ChildProcess::~ChildProcess() {
    end();
}

void ChildProcess::reap() {
    int status = 0;
    if (m_exit || waitpid(m_pid, &status, WNOHANG) != m_pid) {
        return;
    }
    m_exit = WIFSIGNALED(status) ? Exit{0, WTERMSIG(status)} : Exit{WEXITSTATUS(status), 0};
}

bool ChildProcess::isRunning() {
    reap();
    return !m_exit;
}

std::optional<ChildProcess::Exit> ChildProcess::waitForExit(std::chrono::milliseconds limit) {
    waitUntil([this] { return !isRunning(); }, limit);
    return m_exit;
}

void ChildProcess::sendSignal(int number) {
    if (isRunning()) {
        kill(m_pid, number);
    }
}

ChildProcess::Exit ChildProcess::end(std::chrono::milliseconds patience) {
    sendSignal(SIGTERM);
    if (!waitForExit(patience)) {
        sendSignal(SIGKILL);
        waitForExit(std::chrono::seconds(5));
    }
    return m_exit.value_or(Exit{0, SIGKILL});
}

} // namespace snapvane::testing
