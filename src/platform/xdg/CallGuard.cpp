#include "platform/xdg/CallGuard.h"

#include <gio/gio.h>

namespace snapvane::xdg {

CallGuard::CallGuard(std::chrono::milliseconds limit)
    : m_cancellable(g_cancellable_new()), m_context(g_main_context_new()),
      m_watcher([this, limit] { watch(limit); }) {
    g_main_context_push_thread_default(m_context);
}

CallGuard::~CallGuard() {
    // What is left to be delivered frees what it belongs to.
    while (g_main_context_iteration(m_context, FALSE) != FALSE) {
    }
    g_main_context_pop_thread_default(m_context);
    setState(State::Over);
    m_watcher.join();
    g_main_context_unref(m_context);
    g_object_unref(m_cancellable);
}

void CallGuard::cancel() {
    setState(State::ToBeCancelled);
}

void CallGuard::setState(State state) {
    const std::lock_guard lock(m_mutex);
    m_state = state;
    m_changed.notify_all();
}

void CallGuard::watch(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, limit, [this] { return m_state != State::UnderWay; });
    const bool isOver = m_state == State::Over;
    lock.unlock();
    if (!isOver) {
        g_cancellable_cancel(m_cancellable);
    }
}

} // namespace snapvane::xdg
