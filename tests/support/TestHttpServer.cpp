#include "TestHttpServer.h"

#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QThread>

#include <atomic>
#include <mutex>
#include <semaphore>
#include <stdexcept>
#include <sys/socket.h>

namespace snapvane::testing {

namespace {

constexpr int turnMs = 20;
constexpr qint64 blockSize = 256 * 1024;

} // namespace

QByteArray RecordedRequest::method() const {
    return head.left(head.indexOf(' '));
}

QByteArray RecordedRequest::target() const {
    return head.left(head.indexOf("\r\n")).split(' ').value(1);
}

QByteArrayList RecordedRequest::headers() const {
    QByteArrayList lines;
    qsizetype start = head.indexOf("\r\n") + 2;
    for (qsizetype end = head.indexOf("\r\n", start); end > start;
         start = end + 2, end = head.indexOf("\r\n", start)) {
        lines += head.mid(start, end - start);
    }
    return lines;
}

std::optional<QByteArray> RecordedRequest::header(const QByteArray& name) const {
    for (const QByteArray& line : headers()) {
        const qsizetype colon = line.indexOf(':');
        if (line.left(colon).compare(name, Qt::CaseInsensitive) == 0) {
            return line.mid(colon + 1).trimmed();
        }
    }
    return std::nullopt;
}

/// What the server's threads and the test share.
struct TestHttpServer::State {
    Handler handler;
    std::optional<ServerIdentity> identity;
    std::atomic<bool> stop = false;
    std::atomic<int> connections = 0;
    std::atomic<int> handshakes = 0;
    std::atomic<int> open = 0;
    std::atomic<qint64> streamed = 0;
    std::mutex mutex;
    std::vector<RecordedRequest> requests;

    std::size_t record(const RecordedRequest& request) {
        const std::scoped_lock lock(mutex);
        requests.push_back(request);
        return requests.size() - 1;
    }
    void updateBody(std::size_t index, const QByteArray& body) {
        const std::scoped_lock lock(mutex);
        requests[index].body = body;
    }
};

/// One connection, on its own thread, by blocking calls.
class TestHttpServer::Connection : public QThread {
public:
    Connection(qintptr descriptor, std::shared_ptr<State> state)
        : m_descriptor(descriptor), m_state(std::move(state)) {}

protected:
    void run() override {
        ++m_state->open;
        QSslSocket socket;
        m_socket = &socket;
        if (socket.setSocketDescriptor(m_descriptor) && secure()) {
            serve();
        }
        socket.abort();
        --m_state->open;
    }

private:
    bool secure() {
        if (!m_state->identity) {
            return true;
        }
        QSslConfiguration configuration = m_socket->sslConfiguration();
        configuration.setLocalCertificate(m_state->identity->certificate);
        configuration.setPrivateKey(m_state->identity->key);
        m_socket->setSslConfiguration(configuration);
        m_socket->startServerEncryption();
        const bool secured = m_socket->waitForEncrypted(10'000);
        m_state->handshakes += secured ? 1 : 0;
        return secured;
    }

    /// Waits for more; false when there will be none.
    bool receive() {
        while (!m_state->stop && m_socket->state() == QAbstractSocket::ConnectedState) {
            if (m_socket->bytesAvailable() > 0 || m_socket->waitForReadyRead(turnMs)) {
                return true;
            }
        }
        return m_socket->bytesAvailable() > 0;
    }

    void serve() {
        // Else everything that arrives is taken from the network at once, with the head already.
        m_socket->setReadBufferSize(blockSize);
        QByteArray received;
        while (!received.contains("\r\n\r\n")) {
            if (!receive()) {
                return;
            }
            received += m_socket->readAll();
        }
        const qsizetype headSize = received.indexOf("\r\n\r\n") + 4;
        RecordedRequest request{.head = received.left(headSize), .body = received.mid(headSize)};
        const std::size_t index = m_state->record(request);
        const HttpPlan plan = m_state->handler(request);
        readBody(request, plan);
        m_state->updateBody(index, request.body);
        for (const HttpStep& step : plan.steps) {
            if (!perform(step)) {
                return;
            }
        }
        close();
    }

    void readBody(RecordedRequest& request, const HttpPlan& plan) {
        const qint64 size = request.header("Content-Length").value_or(QByteArray()).toLongLong();
        const qint64 wanted = std::min(size, plan.bodyBytesToRead);
        while (request.body.size() < wanted && pause(plan.pauseBetweenReads) && receive()) {
            request.body += m_socket->read(std::min(wanted - request.body.size(), blockSize));
        }
        m_socket->setReadBufferSize(0);
    }

    bool flush() {
        while (m_socket->bytesToWrite() > 0) {
            if (m_state->stop || m_socket->state() != QAbstractSocket::ConnectedState) {
                return false;
            }
            m_socket->waitForBytesWritten(turnMs);
        }
        return m_socket->state() == QAbstractSocket::ConnectedState;
    }

    bool send(const QByteArray& bytes) {
        m_socket->write(bytes);
        return flush();
    }

    bool perform(const HttpStep& step) {
        switch (step.kind) {
        case HttpStep::Kind::Send:
            return send(step.bytes);
        case HttpStep::Kind::Drip:
            return std::ranges::all_of(step.bytes, [&](char byte) {
                return send(QByteArray(1, byte)) && pause(step.time);
            });
        case HttpStep::Kind::Stream:
            return stream(step.count, step.bytes);
        case HttpStep::Kind::Pause:
            return pause(step.time);
        case HttpStep::Kind::Stall:
            while (receive()) {
                m_socket->readAll();
            }
            return false;
        case HttpStep::Kind::Reset:
            reset();
            return false;
        }
        return false;
    }

    bool stream(qint64 count, const QByteArray& beforeEachBlock) {
        const QByteArray block(blockSize, '\0');
        for (qint64 sent = 0; sent < count; sent += blockSize) {
            if (!send(beforeEachBlock + block.left(count - sent))) {
                return false;
            }
            m_state->streamed += std::min(blockSize, count - sent);
        }
        return true;
    }

    /// In parts, so that the end of the server need not be waited for.
    bool pause(std::chrono::milliseconds time) {
        const std::chrono::milliseconds turn(turnMs);
        for (; time.count() > 0 && !m_state->stop; time -= turn) {
            QThread::msleep(static_cast<unsigned long>(std::min(time, turn).count()));
        }
        return !m_state->stop;
    }

    void reset() {
        const linger now = {.l_onoff = 1, .l_linger = 0};
        ::setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &now,
                     sizeof now);
        m_socket->abort();
    }

    /// What is still on its way to us must be taken first: closing would break it off, and our
    /// answer with it.
    void close() {
        if (m_state->identity) {
            m_socket->disconnectFromHost();
        } else {
            ::shutdown(static_cast<int>(m_socket->socketDescriptor()), SHUT_WR);
        }
        for (int turn = 0; turn < 250 && receiveFor(turnMs); ++turn) {
            m_socket->readAll();
        }
    }

    bool receiveFor(int milliseconds) {
        m_socket->waitForReadyRead(milliseconds);
        return !m_state->stop && m_socket->state() != QAbstractSocket::UnconnectedState;
    }

    qintptr m_descriptor;
    std::shared_ptr<State> m_state;
    QSslSocket* m_socket = nullptr;
};

/// Accepts connections on a thread of its own and ends theirs with itself.
class TestHttpServer::Listener : public QThread {
public:
    Listener(std::shared_ptr<State> state, quint16 port) : m_state(std::move(state)), m_port(port) {
        start();
        m_ready.acquire();
        if (m_port == 0) {
            wait();
            throw std::runtime_error("no web server for the test: " + m_fault.toStdString());
        }
    }
    ~Listener() override {
        m_state->stop = true;
        wait();
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    quint16 port() const { return m_port; }

protected:
    void run() override {
        Server server(m_state);
        const bool listening = server.listen(QHostAddress::LocalHost, m_port);
        m_fault = server.errorString();
        m_port = listening ? server.serverPort() : 0;
        m_ready.release();
        while (listening && !m_state->stop) {
            server.waitForNewConnection(turnMs);
        }
    }

private:
    class Server : public QTcpServer {
    public:
        explicit Server(std::shared_ptr<State> state) : m_shared(std::move(state)) {}
        ~Server() override {
            for (const auto& connection : m_connections) {
                connection->wait();
            }
        }
        Server(const Server&) = delete;
        Server& operator=(const Server&) = delete;

    protected:
        void incomingConnection(qintptr descriptor) override {
            ++m_shared->connections;
            m_connections.push_back(std::make_unique<Connection>(descriptor, m_shared));
            m_connections.back()->start();
        }

    private:
        std::shared_ptr<State> m_shared;
        std::vector<std::unique_ptr<Connection>> m_connections;
    };

    std::shared_ptr<State> m_state;
    quint16 m_port;
    QString m_fault;
    std::binary_semaphore m_ready{0};
};

TestHttpServer::TestHttpServer(Handler handler, const Options& options)
    : m_state(std::make_shared<State>()) {
    m_state->handler = std::move(handler);
    m_state->identity = options.identity;
    m_listener = std::make_unique<Listener>(m_state, options.port);
}

TestHttpServer::~TestHttpServer() = default;

quint16 TestHttpServer::port() const {
    return m_listener->port();
}

QUrl TestHttpServer::url(const QString& path) const {
    const QString scheme = m_state->identity ? QStringLiteral("https") : QStringLiteral("http");
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(port()).arg(path));
}

std::vector<RecordedRequest> TestHttpServer::requests() const {
    const std::scoped_lock lock(m_state->mutex);
    return m_state->requests;
}

int TestHttpServer::connectionCount() const {
    return m_state->connections;
}

int TestHttpServer::handshakeCount() const {
    return m_state->handshakes;
}

int TestHttpServer::openConnectionCount() const {
    return m_state->open;
}

qint64 TestHttpServer::streamedBytes() const {
    return m_state->streamed;
}

} // namespace snapvane::testing
