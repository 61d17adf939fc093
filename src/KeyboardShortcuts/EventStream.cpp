#include "KeyboardShortcuts/EventStream.h"

#include <utility>

namespace KeyboardShortcuts {

struct EventStream::State {
    std::deque<EventType> events;
    bool hasEnded = false;
    std::coroutine_handle<> consumer;
    std::function<void()> onEnd;

    /// The consumer may end the stream, or ask for more, before this returns.
    void wake() {
        if (const auto waiting = std::exchange(consumer, nullptr)) {
            waiting.resume();
        }
    }
};

EventStream::Next::~Next() {
    // A consumer that is gone before anything came must not be woken.
    m_state->consumer = nullptr;
}

bool EventStream::Next::Awaiter::await_ready() const {
    return m_state->hasEnded || !m_state->events.empty();
}

void EventStream::Next::Awaiter::await_suspend(std::coroutine_handle<> consumer) {
    m_state->consumer = consumer;
}

std::optional<EventType> EventStream::Next::Awaiter::await_resume() {
    if (m_state->events.empty()) {
        return std::nullopt;
    }
    const EventType type = m_state->events.front();
    m_state->events.pop_front();
    return type;
}

void EventStream::Sink::push(EventType type) const {
    const auto state = m_state.lock();
    if (state && !state->hasEnded) {
        state->events.push_back(type);
        state->wake();
    }
}

EventStream::EventStream() : m_state(std::make_shared<State>()) {}

EventStream::~EventStream() {
    if (m_state) {
        end();
    }
}

void EventStream::onEnd(std::function<void()> handler) {
    m_state->onEnd = std::move(handler);
}

void EventStream::end() {
    const auto state = m_state;
    if (std::exchange(state->hasEnded, true)) {
        return;
    }
    if (const auto handler = std::exchange(state->onEnd, nullptr)) {
        handler();
    }
    state->wake();
}

} // namespace KeyboardShortcuts
