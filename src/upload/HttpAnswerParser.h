#pragma once

#include <QByteArray>

#include <optional>

namespace snapvane {

/// Reads the answer to an HTTP/1 request from the bytes as they come in, whatever they are, and
/// holds no more of them than its limits allow. Interim answers are passed over.
class HttpAnswerParser {
public:
    enum class State {
        /// More must come, of the head or of the body.
        InHead,
        InBody,
        Complete,
        /// The body is longer than was asked for.
        TooLong,
        /// No HTTP, or broken beyond use.
        Malformed
    };

    /// Status line and headers, interim answers included, may be so long together.
    static constexpr qsizetype headLimit = 64 * 1024;

    explicit HttpAnswerParser(qsizetype bodyLimit) : m_bodyLimit(bodyLimit) {}

    State state() const { return m_state; }
    /// 0 until the final status line and its headers are there.
    int status() const { return m_status; }
    const QByteArray& body() const { return m_body; }

    State feed(const QByteArray& bytes);
    /// Nothing more comes. Completes an answer whose length nobody has told.
    State end();

private:
    enum class Framing { UntilClosed, Length, ChunkSize, Chunk, ChunkEnd, Trailers };

    bool step();
    bool stepInHead();
    bool stepInBody();
    std::optional<QByteArray> takeLine();
    void takeStatusLine(const QByteArray& line);
    void takeHeader(const QByteArray& line);
    void finishHead();
    bool takeBody(qsizetype wanted);
    void takeChunkSize(const QByteArray& line);
    void take(qsizetype count);

    qsizetype m_bodyLimit;
    State m_state = State::InHead;
    QByteArray m_pending;
    qsizetype m_headBytes = 0;
    bool m_inHeaders = false;
    int m_announcedStatus = 0;
    int m_status = 0;
    Framing m_framing = Framing::UntilClosed;
    bool m_isChunked = false;
    std::optional<qint64> m_length;
    /// Bytes that are still to come of the body, or of the chunk.
    qint64 m_left = 0;
    QByteArray m_body;
};

} // namespace snapvane
