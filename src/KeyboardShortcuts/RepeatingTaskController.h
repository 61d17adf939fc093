#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace KeyboardShortcuts {

/// Does something again and again while a key is held: first after a delay, then at an interval, as
/// keyboards repeat a key. Main thread.
class RepeatingTaskController {
public:
    /// Half a second tells a press from a hold; thirty-three times a second is what desktops repeat
    /// keys at.
    static constexpr std::chrono::milliseconds initialDelay{500};
    static constexpr std::chrono::milliseconds interval{30};

    /// `task` returns false to stop. It may destroy the controller.
    explicit RepeatingTaskController(std::function<bool()> task);

    void start();
    void stop();
    bool isRunning() const { return m_timer.isActive(); }

private:
    std::function<bool()> m_task;
    QTimer m_timer;
};

} // namespace KeyboardShortcuts
