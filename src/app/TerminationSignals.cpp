#include "app/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace snapvane {

namespace {

// A signal handler may do little more than write to a file descriptor.
std::array<int, 2> sockets = {-1, -1};

void handleSignal(int) {
    const int interrupted = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(sockets[0], &byte, sizeof byte);
    errno = interrupted;
}

void setHandlers(void (*handler)(int)) {
    for (const int number : {SIGTERM, SIGINT}) {
        struct sigaction action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler)
    : m_handler(std::move(handler)) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
        return; // The system's own handling stays: the program ends all the same.
    }
    m_notifier = std::make_unique<QSocketNotifier>(sockets[1], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        char byte = 0;
        [[maybe_unused]] const auto count = ::read(sockets[1], &byte, sizeof byte);
        m_handler();
    });
    setHandlers(handleSignal);
}

TerminationSignals::~TerminationSignals() {
    if (!m_notifier) {
        return;
    }
    setHandlers(SIG_DFL);
    m_notifier.reset();
    ::close(sockets[0]);
    ::close(sockets[1]);
}

} // namespace snapvane
