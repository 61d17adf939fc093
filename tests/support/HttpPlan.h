#pragma once

#include <QByteArray>

#include <chrono>
#include <limits>
#include <vector>

namespace snapvane::testing {

/// One thing that a server for tests does on a connection.
struct HttpStep {
    enum class Kind {
        /// Sends `bytes` as they are.
        Send,
        /// Sends `bytes` one by one, with `time` after each.
        Drip,
        /// Sends `count` zeros as fast as they are taken, in blocks of 256 KiB with `bytes` before
        /// each.
        Stream,
        /// Does nothing for `time`.
        Pause,
        /// Keeps the connection and says nothing until the other side has gone.
        Stall,
        /// Breaks the connection off instead of closing it.
        Reset
    };

    Kind kind = Kind::Send;
    QByteArray bytes = {};
    qint64 count = 0;
    std::chrono::milliseconds time = {};
};

/// What a server for tests does with one request. At the end of the steps it closes the connection.
struct HttpPlan {
    std::vector<HttpStep> steps;
    /// How much of the request's body it takes before the first step.
    qint64 bodyBytesToRead = std::numeric_limits<qint64>::max();
    /// How long it waits before each block of 256 KiB of that body.
    std::chrono::milliseconds pauseBetweenReads = {};
};

/// A status line, headers and a whole body.
QByteArray httpAnswer(int status, const QByteArray& body = {},
                      const QByteArray& contentType = "application/json");

/// Answers in the ordinary way.
HttpPlan answering(int status, const QByteArray& body = {},
                   const QByteArray& contentType = "application/json");
/// Sends the bytes, whatever they are, and closes the connection.
HttpPlan sending(const QByteArray& bytes);
HttpPlan stalling(const QByteArray& bytesBefore = {});
HttpPlan resetting(const QByteArray& bytesBefore = {});

} // namespace snapvane::testing
