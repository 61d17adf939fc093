#pragma once

#include "TestHttpServer.h"

#include <QJsonObject>

namespace snapvane::testing {

/// A Ferrybox service on loopback: answers presign requests with an address of its own and takes
/// what is put there, unless the test wants one of the two to go wrong. Other requests get a 404.
class FerryboxServer {
public:
    using Options = TestHttpServer::Options;
    /// What to do instead of answering well.
    using Handler = TestHttpServer::Handler;

    struct Faults {
        Handler presign = {};
        Handler put = {};
    };

    FerryboxServer() : FerryboxServer(Faults()) {}
    explicit FerryboxServer(Faults faults) : FerryboxServer(std::move(faults), Options()) {}
    FerryboxServer(Faults faults, const Options& options);

    [[nodiscard]] TestHttpServer& server() { return m_server; }
    /// Where the service's API is.
    [[nodiscard]] QUrl baseURL() const { return m_server.url(QStringLiteral("/api")); }
    [[nodiscard]] QUrl uploadURL() const;

    /// All requests of that method.
    [[nodiscard]] std::vector<RecordedRequest> presigns() const { return requestsOf("POST"); }
    [[nodiscard]] std::vector<RecordedRequest> puts() const { return requestsOf("PUT"); }

    /// The answer to a presign request that a service on that address gives.
    static QJsonObject presignAnswer(const QUrl& uploadURL);
    /// Under which an uploaded file is found.
    static QUrl publicURL() { return QUrl(QStringLiteral("https://ferrybox.example/f/abc123")); }

private:
    HttpPlan handle(const RecordedRequest& request) const;
    [[nodiscard]] std::vector<RecordedRequest> requestsOf(const QByteArray& method) const;

    Faults m_faults;
    TestHttpServer m_server;
};

} // namespace snapvane::testing
