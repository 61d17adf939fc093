#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

// GLib's own names, so that its headers stay out of this one.
using GCancellable = struct _GCancellable;
using GMainContext = struct _GMainContext;

namespace snapvane::xdg {

/// What one synchronous call of a GLib library on a pool thread needs around it: a limit on its
/// time, a way to end it from another thread, and an event context of its own, so that nothing the
/// call leaves behind is delivered on the main thread. Made and destroyed by the thread that makes
/// the call.
class CallGuard {
public:
    explicit CallGuard(std::chrono::milliseconds limit);
    ~CallGuard();
    CallGuard(const CallGuard&) = delete;
    CallGuard& operator=(const CallGuard&) = delete;

    /// For the calls to be guarded.
    GCancellable* cancellable() const { return m_cancellable; }
    /// Ends the call. Any thread.
    void cancel();

private:
    enum class State { UnderWay, ToBeCancelled, Over };

    void watch(std::chrono::milliseconds limit);
    void setState(State state);

    GCancellable* m_cancellable;
    GMainContext* m_context;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state = State::UnderWay;
    std::thread m_watcher;
};

} // namespace snapvane::xdg
