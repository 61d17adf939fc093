#include "upload/HttpAnswerParser.h"

#include <algorithm>
#include <cctype>

namespace snapvane {

namespace {

constexpr char version[] = "HTTP/1.";
constexpr qsizetype versionSize = sizeof version - 1;

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// A number without sign, spaces and surprises; nothing for everything else.
std::optional<qint64> plainNumber(const QByteArray& text, int base) {
    constexpr qsizetype digitLimit = 15; // cannot overflow in either base
    const auto isAllowed = [base](char letter) {
        return isDigit(letter) || (base == 16 && std::isxdigit(static_cast<unsigned char>(letter)));
    };
    if (text.isEmpty() || text.size() > digitLimit || !std::ranges::all_of(text, isAllowed)) {
        return std::nullopt;
    }
    return text.toLongLong(nullptr, base);
}

/// Whether the bytes may be, or become, the start of an answer.
bool mayBeHttp(const QByteArray& bytes) {
    const qsizetype count = std::min(bytes.size(), versionSize);
    return bytes.left(count) == QByteArray::fromRawData(version, count);
}

} // namespace

HttpAnswerParser::State HttpAnswerParser::feed(const QByteArray& bytes) {
    m_pending += bytes;
    while ((m_state == State::InHead || m_state == State::InBody) && step()) {
    }
    if (m_state == State::TooLong || m_state == State::Malformed) {
        m_pending.clear();
        m_body.clear();
    }
    return m_state;
}

HttpAnswerParser::State HttpAnswerParser::end() {
    if (m_state == State::InBody && m_framing == Framing::UntilClosed) {
        m_state = State::Complete;
    }
    return m_state;
}

/// False when it can go no further without more bytes.
bool HttpAnswerParser::step() {
    return m_state == State::InHead ? stepInHead() : stepInBody();
}

bool HttpAnswerParser::stepInHead() {
    if (!m_inHeaders && !mayBeHttp(m_pending)) {
        m_state = State::Malformed;
        return true;
    }
    const std::optional<QByteArray> line = takeLine();
    if (!line) {
        return m_state == State::Malformed;
    }
    if (!m_inHeaders) {
        takeStatusLine(*line);
    } else if (!line->isEmpty()) {
        takeHeader(*line);
    } else {
        finishHead();
    }
    return true;
}

/// A line without its end; nothing while there is no whole one. Lines of the body's framing count
/// as head.
std::optional<QByteArray> HttpAnswerParser::takeLine() {
    const qsizetype end = m_pending.indexOf('\n');
    const qsizetype size = end < 0 ? m_pending.size() : end + 1;
    if (m_headBytes + size > headLimit) {
        m_state = State::Malformed;
        return std::nullopt;
    }
    if (end < 0) {
        return std::nullopt;
    }
    QByteArray line = m_pending.left(end);
    if (line.endsWith('\r')) {
        line.chop(1);
    }
    m_headBytes += size;
    m_pending.remove(0, size);
    return line;
}

void HttpAnswerParser::takeStatusLine(const QByteArray& line) {
    // "HTTP/1.x 200", then nothing or a space and the reason.
    const QByteArray digits = line.mid(versionSize + 2, 3);
    const bool isWellFormed = line.size() >= versionSize + 5 && isDigit(line[versionSize]) &&
                              line[versionSize + 1] == ' ' && digits[0] != '0' &&
                              std::ranges::all_of(digits, isDigit) &&
                              (line.size() == versionSize + 5 || line[versionSize + 5] == ' ');
    if (!isWellFormed) {
        m_state = State::Malformed;
        return;
    }
    m_announcedStatus = digits.toInt();
    m_inHeaders = true;
}

void HttpAnswerParser::takeHeader(const QByteArray& line) {
    const qsizetype colon = line.indexOf(':');
    const QByteArray name = line.left(colon).toLower();
    const QByteArray value = line.mid(colon + 1).trimmed();
    if (name == "transfer-encoding") {
        m_isChunked = value.toLower().endsWith("chunked");
    } else if (name == "content-length") {
        const std::optional<qint64> length = plainNumber(value, 10);
        if (!length || (m_length && m_length != length)) {
            m_state = State::Malformed;
        }
        m_length = length;
    }
}

void HttpAnswerParser::finishHead() {
    m_inHeaders = false;
    const bool isInterim = m_announcedStatus < 200 && m_announcedStatus != 101;
    if (isInterim) {
        m_isChunked = false;
        m_length.reset();
        return;
    }
    m_status = m_announcedStatus;
    m_state = State::InBody;
    if (m_status == 204 || m_status == 304) {
        m_state = State::Complete;
    } else if (m_isChunked) {
        m_framing = Framing::ChunkSize;
    } else if (m_length) {
        m_framing = Framing::Length;
        m_left = *m_length;
    }
}

bool HttpAnswerParser::stepInBody() {
    switch (m_framing) {
    case Framing::UntilClosed:
        take(m_pending.size());
        return false;
    case Framing::Length:
        if (m_left > m_bodyLimit - m_body.size()) {
            m_state = State::TooLong;
        } else if (m_left == 0) {
            m_state = State::Complete;
        } else {
            return takeBody(m_pending.size());
        }
        return true;
    case Framing::Chunk:
        if (m_left > 0) {
            return takeBody(m_pending.size());
        }
        m_framing = Framing::ChunkEnd;
        return true;
    default:
        break;
    }
    const std::optional<QByteArray> line = takeLine();
    if (!line) {
        return m_state == State::Malformed;
    }
    if (m_framing == Framing::ChunkSize) {
        takeChunkSize(*line);
    } else if (m_framing == Framing::ChunkEnd) {
        m_framing = Framing::ChunkSize;
        m_state = line->isEmpty() ? State::InBody : State::Malformed;
    } else if (line->isEmpty()) {
        m_state = State::Complete;
    }
    return true;
}

void HttpAnswerParser::takeChunkSize(const QByteArray& line) {
    // Extensions may follow.
    const QByteArray digits(line.begin(), std::find(line.begin(), line.end(), ';') - line.begin());
    const std::optional<qint64> size = plainNumber(digits.trimmed(), 16);
    if (!size) {
        m_state = State::Malformed;
        return;
    }
    // The framing of many chunks is no head; it need not be bounded beyond the body.
    m_headBytes = 0;
    m_left = *size;
    m_framing = *size == 0 ? Framing::Trailers : Framing::Chunk;
    if (m_left > m_bodyLimit - m_body.size()) {
        m_state = State::TooLong;
    }
}

/// What is there of the bytes that are still to come.
bool HttpAnswerParser::takeBody(qsizetype wanted) {
    const qsizetype count = std::min<qint64>(wanted, m_left);
    m_left -= count;
    take(count);
    return count > 0;
}

void HttpAnswerParser::take(qsizetype count) {
    if (count > m_bodyLimit - m_body.size()) {
        m_state = State::TooLong;
        return;
    }
    m_body += m_pending.left(count);
    m_pending.remove(0, count);
}

} // namespace snapvane
