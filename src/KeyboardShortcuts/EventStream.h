#pragma once

#include "KeyboardShortcuts/EventType.h"

#include <coroutine>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace KeyboardShortcuts {

/// Events in the order in which they came, for one consumer that awaits them one by one; those that
/// nobody awaits yet are kept, without limit. Ends with the object or by `end`. Main thread.
class EventStream {
    struct State;

public:
    /// What a consumer awaits, as a local variable of its own. Gives nothing once the stream has
    /// ended and its events are used up.
    class Next {
    public:
        /// What the language asks of what is awaited; a copy of it may be made.
        class Awaiter {
        public:
            explicit Awaiter(std::shared_ptr<State> state) : m_state(std::move(state)) {}
            bool await_ready() const;
            void await_suspend(std::coroutine_handle<> consumer);
            std::optional<EventType> await_resume();

        private:
            std::shared_ptr<State> m_state;
        };

        explicit Next(std::shared_ptr<State> state) : m_state(std::move(state)) {}
        Next(const Next&) = delete;
        Next& operator=(const Next&) = delete;
        ~Next();

        Awaiter operator co_await() const { return Awaiter(m_state); }

    private:
        std::shared_ptr<State> m_state;
    };

    /// Puts events into the stream that it belongs to, for as long as that exists.
    class Sink {
    public:
        explicit Sink(std::weak_ptr<State> state) : m_state(std::move(state)) {}
        void push(EventType type) const;

    private:
        std::weak_ptr<State> m_state;
    };

    EventStream();
    ~EventStream();
    EventStream(EventStream&& other) noexcept = default;
    EventStream& operator=(EventStream&& other) = delete;

    Sink sink() const { return Sink(m_state); }
    /// Called once, when the stream ends.
    void onEnd(std::function<void()> handler);
    /// Only one at a time may be awaited.
    Next next() { return Next(m_state); }
    void end();

private:
    std::shared_ptr<State> m_state;
};

} // namespace KeyboardShortcuts
