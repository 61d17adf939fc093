#pragma once

#include "KeyboardShortcuts/EventStream.h"
#include "base/Async.h"

#include <functional>
#include <memory>
#include <string>

namespace KeyboardShortcuts {

/// What somebody who awaits the events of a stream has got.
struct Consumer {
    explicit Consumer(EventStream theStream)
        : stream(std::make_unique<EventStream>(std::move(theStream))) {}

    /// A letter for each event, d for key-down and u for key-up, and a full stop at the end.
    std::string received;
    std::unique_ptr<EventStream> stream;
    /// Called with each event.
    std::function<void()> onEvent;
};

inline QCoro::Task<> receiveAll(std::shared_ptr<Consumer> consumer) {
    for (;;) {
        auto next = consumer->stream->next();
        const auto event = co_await next;
        if (!event) {
            break;
        }
        consumer->received += *event == EventType::keyDown ? 'd' : 'u';
        if (consumer->onEvent) {
            consumer->onEvent();
        }
        if (!consumer->stream) {
            break;
        }
    }
    consumer->received += '.';
}

/// Begins to await the stream's events, until the consumer is dropped or the stream ends.
inline std::shared_ptr<Consumer> consume(EventStream stream) {
    auto consumer = std::make_shared<Consumer>(std::move(stream));
    snapvane::startDetached(receiveAll(consumer));
    // What awaits holds the consumer, which holds what is awaited: ending the stream undoes that.
    Consumer* const received = consumer.get();
    return {received, [consumer = std::move(consumer)](Consumer*) {
                if (consumer->stream) {
                    consumer->stream->end();
                }
            }};
}

} // namespace KeyboardShortcuts
