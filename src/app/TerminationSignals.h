#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace snapvane {

/// Turns SIGTERM and SIGINT into a call on the main thread, so that the program ends as if it had
/// been asked by its menu. One at a time; main thread.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> handler);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    std::function<void()> m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace snapvane
