#include "base/MainLoopWatchdog.h"

#include <cstdio>
#include <cstdlib>

namespace snapvane {

namespace {

// The limit is counted in intervals without a heartbeat rather than read off a clock: a process
// that was stopped and continued, or a computer that slept, must not be taken for one that hangs.
constexpr int missedBeatsAllowed = 5;

} // namespace

MainLoopWatchdog::MainLoopWatchdog(std::chrono::milliseconds limit)
    : m_interval(limit / missedBeatsAllowed) {
    QObject::connect(&m_heart, &QTimer::timeout, &m_heart, [this] { ++m_beats; });
    m_heart.start(m_interval / 2);
    m_thread = std::thread([this] { watch(); });
}

MainLoopWatchdog::~MainLoopWatchdog() {
    {
        const std::scoped_lock lock(m_mutex);
        m_stopping = true;
    }
    m_stopRequested.notify_one();
    m_thread.join();
}

void MainLoopWatchdog::watch() {
    std::uint64_t seen = m_beats;
    int missed = 0;
    std::unique_lock lock(m_mutex);
    while (!m_stopRequested.wait_for(lock, m_interval, [this] { return m_stopping; })) {
        const std::uint64_t now = m_beats;
        missed = now == seen ? missed + 1 : 0;
        seen = now;
        if (missed >= missedBeatsAllowed) {
            std::fputs(
                "[Watchdog] error: The main loop hangs while it covers the screen; leaving.\n",
                stderr);
            // No destructors, no exit handlers: they may wait for the thread that hangs.
            std::_Exit(EXIT_FAILURE);
        }
    }
}

} // namespace snapvane
