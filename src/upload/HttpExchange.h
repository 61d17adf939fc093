#pragma once

#include "upload/HttpAnswerParser.h"
#include "upload/HttpRequest.h"
#include "upload/TransportError.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QSslConfiguration>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace snapvane {

/// What came back for one request.
struct HttpAnswer {
    /// The HTTP status; 0 when something came back that is not HTTP.
    int status = 0;
    /// As far as it was asked for.
    QByteArray body;
    /// The body went past its limit and was dropped.
    bool bodyTooLong = false;
    /// When set, nothing else counts.
    std::optional<TransportError> failure;
};

/// How an exchange is to be done.
struct HttpTerms {
    /// How long it may go without a byte in either direction.
    std::chrono::milliseconds inactivityLimit;
    /// The body is read only where the status is from 200 to 299, and only up to so many bytes; 0
    /// means that the status is all that matters.
    qsizetype bodyLimit = 0;
    /// Whom to trust, where the request goes to an https server. Verification is not for
    /// negotiation: what the server shows must hold against this.
    std::optional<QSslConfiguration> trust;
};

/// One request over a connection of its own, until what matters of the answer is there; then it
/// drops the connection with whatever is still to come. Nothing is repeated, followed or kept, and
/// neither the request nor the answer is ever held in memory a second time. Owned by the session
/// that made it. Main thread.
class HttpExchange : public QObject {
    Q_OBJECT

public:
    /// Starts at once.
    HttpExchange(HttpRequest request, HttpTerms terms, QObject* parent);
    /// An exchange that has no answer yet is abandoned.
    ~HttpExchange() override;

    /// Finishes with exactly one answer.
    QFuture<HttpAnswer> answer() const { return m_promise.future(); }

private:
    void openPlainly();
    void openSecurely();
    void follow();
    void restartClock();
    void sendHead();
    void sendBody();
    void receive();
    void takeEnd();
    void judge(HttpAnswerParser::State state);
    void fail(const TransportError& failure);
    void finish(HttpAnswer answer);

    HttpRequest m_request;
    HttpTerms m_terms;
    HttpAnswerParser m_parser;
    std::unique_ptr<QTcpSocket> m_socket;
    QTimer m_inactivity;
    bool m_headSent = false;
    qsizetype m_sent = 0;
    bool m_finished = false;
    QPromise<HttpAnswer> m_promise;
};

} // namespace snapvane
