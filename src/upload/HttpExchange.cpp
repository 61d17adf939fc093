#include "upload/HttpExchange.h"

#include "base/Wipe.h"

#include <QNetworkProxy>
#include <QSslSocket>

#include <algorithm>

namespace snapvane {

namespace {

/// How much is handed to the socket ahead of the network, and taken from it at a time.
constexpr qint64 bufferSize = 256 * 1024;

/// How much the system takes ahead of the network. What it has taken it sends without telling; left
/// to itself it would take so much that a slow line looks like a dead one.
constexpr int systemBufferSize = 128 * 1024;

bool isSuccess(int status) {
    return status >= 200 && status <= 299;
}

bool isSecure(const QUrl& server) {
    return server.scheme() == QStringLiteral("https");
}

quint16 portOf(const QUrl& server) {
    return static_cast<quint16>(server.port(isSecure(server) ? 443 : 80));
}

} // namespace

HttpExchange::HttpExchange(HttpRequest request, HttpTerms terms, QObject* parent)
    : QObject(parent), m_request(std::move(request)), m_terms(std::move(terms)),
      m_parser(m_terms.bodyLimit) {
    m_promise.start();
    m_inactivity.setSingleShot(true);
    connect(&m_inactivity, &QTimer::timeout, this, [this] { fail(TransportError::timedOut()); });
    restartClock();
    if (isSecure(m_request.server)) {
        openSecurely();
    } else {
        openPlainly();
    }
}

HttpExchange::~HttpExchange() {
    fail(TransportError::abandoned());
    wipe(m_request.apiKey);
}

void HttpExchange::openPlainly() {
    m_socket = std::make_unique<QTcpSocket>();
    follow();
    connect(m_socket.get(), &QTcpSocket::connected, this, &HttpExchange::sendHead);
    m_socket->connectToHost(m_request.server.host(QUrl::FullyEncoded), portOf(m_request.server));
}

void HttpExchange::openSecurely() {
    auto* socket = new QSslSocket;
    m_socket.reset(socket);
    if (m_terms.trust) {
        socket->setSslConfiguration(*m_terms.trust);
    }
    socket->setPeerVerifyMode(QSslSocket::VerifyPeer);
    connect(socket, &QSslSocket::encrypted, this, &HttpExchange::sendHead);
    connect(socket, &QSslSocket::encryptedBytesWritten, this, &HttpExchange::sendBody);
    follow();
    socket->connectToHostEncrypted(m_request.server.host(QUrl::FullyEncoded),
                                   portOf(m_request.server));
}

/// Before the socket does anything: it may fail at once.
void HttpExchange::follow() {
    m_socket->setReadBufferSize(bufferSize);
    // The library would ask the system for one, and the asking may block.
    m_socket->setProxy(QNetworkProxy::NoProxy);
    connect(m_socket.get(), &QTcpSocket::connected, this, [this] {
        m_socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, systemBufferSize);
    });
    connect(m_socket.get(), &QTcpSocket::bytesWritten, this, &HttpExchange::sendBody);
    connect(m_socket.get(), &QTcpSocket::readyRead, this, &HttpExchange::receive);
    connect(m_socket.get(), &QTcpSocket::errorOccurred, this, &HttpExchange::takeEnd);
}

void HttpExchange::restartClock() {
    m_inactivity.start(m_terms.inactivityLimit);
}

void HttpExchange::sendHead() {
    QByteArray head = m_request.takeHead();
    // By pointer, so that the socket copies what is about to be wiped.
    m_socket->write(head.constData(), head.size());
    wipe(head);
    m_headSent = true;
    sendBody();
}

void HttpExchange::sendBody() {
    restartClock();
    const auto isRoom = [this] {
        const auto* secure = qobject_cast<QSslSocket*>(m_socket.get());
        const qint64 encrypted = secure == nullptr ? 0 : secure->encryptedBytesToWrite();
        return m_socket->bytesToWrite() + encrypted < bufferSize;
    };
    while (m_headSent && m_sent < m_request.body.size() && isRoom()) {
        const qint64 count = std::min(bufferSize, m_request.body.size() - m_sent);
        if (m_socket->write(m_request.body.constData() + m_sent, count) != count) {
            return; // The socket tells why.
        }
        m_sent += count;
    }
}

void HttpExchange::receive() {
    restartClock();
    while (!m_finished && m_socket->bytesAvailable() > 0) {
        judge(m_parser.feed(m_socket->read(bufferSize)));
    }
}

/// The connection has ended, in order or not. An answer may have come before.
void HttpExchange::takeEnd() {
    receive();
    if (!m_finished && m_socket->error() == QAbstractSocket::RemoteHostClosedError) {
        judge(m_parser.end());
    }
    fail(TransportError::of(m_socket->error(), m_socket->errorString()));
}

void HttpExchange::judge(HttpAnswerParser::State state) {
    HttpAnswer answer;
    answer.status = m_parser.status();
    const bool isBodyWanted = m_terms.bodyLimit > 0 && isSuccess(answer.status);
    switch (state) {
    case HttpAnswerParser::State::InHead:
        return;
    case HttpAnswerParser::State::InBody:
        if (isBodyWanted) {
            return;
        }
        break;
    case HttpAnswerParser::State::Complete:
        answer.body = isBodyWanted ? m_parser.body() : QByteArray();
        break;
    case HttpAnswerParser::State::TooLong:
        answer.bodyTooLong = isBodyWanted;
        break;
    case HttpAnswerParser::State::Malformed:
        // Where the body does not matter, neither does what is wrong with it.
        answer.status = isBodyWanted ? 0 : answer.status;
        break;
    }
    finish(std::move(answer));
}

void HttpExchange::fail(const TransportError& failure) {
    HttpAnswer answer;
    answer.failure = failure;
    finish(std::move(answer));
}

/// Only the first answer counts.
void HttpExchange::finish(HttpAnswer answer) {
    if (m_finished) {
        return;
    }
    m_finished = true;
    m_inactivity.stop();
    m_socket->disconnect(this);
    m_promise.addResult(std::move(answer));
    m_promise.finish();
    // Not at once: the socket may be in the middle of telling us something.
    deleteLater();
}

} // namespace snapvane
