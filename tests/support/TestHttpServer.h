#pragma once

#include "HttpPlan.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace snapvane::testing {

/// A request as it arrived, byte for byte.
struct RecordedRequest {
    /// Request line and headers with their line ends, up to and including the empty line.
    QByteArray head;
    /// As much as was read.
    QByteArray body;

    [[nodiscard]] QByteArray method() const;
    /// The path and query as they stand in the request line.
    [[nodiscard]] QByteArray target() const;
    /// The header lines, without their line ends, in their order.
    [[nodiscard]] QByteArrayList headers() const;
    /// The value of a header, whatever the case of its name; nothing when it is not there.
    [[nodiscard]] std::optional<QByteArray> header(const QByteArray& name) const;
};

/// What a TLS server shows of itself.
struct ServerIdentity {
    QSslCertificate certificate;
    QSslKey key;
};

/// A web server on loopback that does to each request what the test wants, however wrong, and
/// records what arrives. Each connection has a thread of its own and serves one request. All its
/// functions may be called from the test's thread at any time.
class TestHttpServer {
public:
    struct Options {
        /// 0 for any free one.
        quint16 port = 0;
        /// Where set, the server speaks TLS.
        std::optional<ServerIdentity> identity = std::nullopt;
    };
    /// Decides what happens to a request when its head has arrived; called on a thread of the
    /// server.
    using Handler = std::function<HttpPlan(const RecordedRequest&)>;

    /// Throws std::runtime_error when the port is taken.
    explicit TestHttpServer(Handler handler) : TestHttpServer(std::move(handler), Options()) {}
    TestHttpServer(Handler handler, const Options& options);
    /// Breaks off what is under way and waits for it.
    ~TestHttpServer();
    TestHttpServer(const TestHttpServer&) = delete;
    TestHttpServer& operator=(const TestHttpServer&) = delete;

    [[nodiscard]] quint16 port() const;
    [[nodiscard]] QUrl url(const QString& path = {}) const;

    /// In the order in which their heads arrived.
    [[nodiscard]] std::vector<RecordedRequest> requests() const;
    [[nodiscard]] int connectionCount() const;
    /// Connections on which TLS came about.
    [[nodiscard]] int handshakeCount() const;
    /// Connections that are open at the moment.
    [[nodiscard]] int openConnectionCount() const;
    /// How many bytes of streams have left for the network.
    [[nodiscard]] qint64 streamedBytes() const;

private:
    class Listener;
    class Connection;
    struct State;

    std::shared_ptr<State> m_state;
    std::unique_ptr<Listener> m_listener;
};

} // namespace snapvane::testing
