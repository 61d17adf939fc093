#include "KeyboardShortcuts/RepeatingTaskController.h"

#include <QPointer>

namespace KeyboardShortcuts {

RepeatingTaskController::RepeatingTaskController(std::function<bool()> task)
    : m_task(std::move(task)) {
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        const QPointer<QTimer> timer(&m_timer);
        timer->setInterval(interval);
        // A copy: the task may take this object with it.
        const auto repeat = m_task;
        const bool goesOn = repeat();
        if (timer && !goesOn) {
            timer->stop();
        }
    });
}

void RepeatingTaskController::start() {
    m_timer.start(initialDelay);
}

void RepeatingTaskController::stop() {
    m_timer.stop();
}

} // namespace KeyboardShortcuts
