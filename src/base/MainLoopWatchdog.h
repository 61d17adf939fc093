#pragma once

#include <QTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace snapvane {

/// Ends the program when the main loop makes no progress for a while. It runs only while the
/// program covers a screen and has the keyboard: a hang then would leave the user locked out,
/// whereas the end of the process frees surfaces and grabs. Owned by what covers the screen; main
/// thread only.
class MainLoopWatchdog {
public:
    explicit MainLoopWatchdog(std::chrono::milliseconds limit = std::chrono::seconds(5));
    ~MainLoopWatchdog();
    MainLoopWatchdog(const MainLoopWatchdog&) = delete;
    MainLoopWatchdog& operator=(const MainLoopWatchdog&) = delete;

private:
    void watch();

    std::chrono::milliseconds m_interval;
    QTimer m_heart;
    std::atomic<std::uint64_t> m_beats = 0;
    std::mutex m_mutex;
    std::condition_variable m_stopRequested;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace snapvane
