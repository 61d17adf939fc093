// The client speaks to nobody whose certificate is not verified.

#include "UploadFixture.h"

#include "support/ProcessMemory.h"
#include "support/TestCertificates.h"

#include <QJsonDocument>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using testing::answering;
using testing::FerryboxServer;
using testing::RecordedRequest;
using testing::ServerIdentity;
using testing::TestCertificates;

/// Trusts the tests' own authority, and nobody else, while a test runs.
class UploadTrust : public testing::UploadTest {
protected:
    static void SetUpTestSuite() { s_certificates = std::make_unique<TestCertificates>(); }
    static void TearDownTestSuite() { s_certificates.reset(); }

    void SetUp() override {
        QSslConfiguration trust = m_before;
        trust.setCaCertificates({s_certificates->authority()});
        QSslConfiguration::setDefaultConfiguration(trust);
    }
    void TearDown() override { QSslConfiguration::setDefaultConfiguration(m_before); }

    static const TestCertificates& certificates() { return *s_certificates; }
    static FerryboxServer::Options showing(const ServerIdentity& identity) {
        return {.identity = identity};
    }

private:
    static std::unique_ptr<TestCertificates> s_certificates;
    QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
};

std::unique_ptr<TestCertificates> UploadTrust::s_certificates;

struct BadIdentity {
    const char* name;
    ServerIdentity (TestCertificates::*identity)() const;
    /// What the user is told, among the rest.
    const char* reason;
};

void PrintTo(const BadIdentity& row, std::ostream* stream) {
    *stream << row.name;
}

} // namespace

TEST_F(UploadTrust, VerifiedServerGetsTheUpload) {
    FerryboxServer server({}, showing(certificates().valid()));
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
    ASSERT_EQ(server.puts().size(), 1U);
    EXPECT_EQ(server.presigns()[0].header("X-API-Key"), "key-0123456789");
    EXPECT_EQ(server.puts()[0].body, pictureBytes());
    EXPECT_EQ(server.server().handshakeCount(), 2);
}

TEST_F(UploadTrust, LargePictureArrivesByteForByte) {
    QByteArray large(24 * 1024 * 1024 + 7, '\0');
    for (qsizetype i = 0; i < large.size(); ++i) {
        large[i] = static_cast<char>(i * 31 + i / 4093);
    }
    testing::HttpPlan slowly = answering(200);
    slowly.pauseBetweenReads = std::chrono::milliseconds(5);
    const FerryboxServer server({.put = always(slowly)}, showing(certificates().valid()));
    upload(server.baseURL(), large);
    EXPECT_TRUE(server.puts().at(0).body == large);
}

TEST_F(UploadTrust, LargePictureIsNotHeldTwice) {
    const QByteArray large(24 * 1024 * 1024, 'x');
    limits.inactivity = std::chrono::milliseconds(500);
    const testing::HttpPlan unread = {
        .steps = {{.kind = testing::HttpStep::Kind::Pause, .time = std::chrono::seconds(20)}},
        .bodyBytesToRead = 100'000};
    const FerryboxServer server({.put = always(unread)}, showing(certificates().valid()));
    const testing::PeakMemory memory;
    EXPECT_THROW(upload(server.baseURL(), large), TransportError);
    EXPECT_LT(memory.growth(), large.size() / 2);
}

TEST_F(UploadTrust, PlainRequestToASecureServerIsNoUpload) {
    FerryboxServer server({}, showing(certificates().valid()));
    QUrl url = server.baseURL();
    url.setScheme(u"http"_s);
    EXPECT_FALSE(failureText(url).isEmpty());
    EXPECT_TRUE(server.presigns().empty());
}

class BadIdentities : public UploadTrust, public ::testing::WithParamInterface<BadIdentity> {
protected:
    static ServerIdentity identity() { return (certificates().*GetParam().identity)(); }
    void expectReason(const QString& text) {
        EXPECT_TRUE(text.contains(QLatin1String(GetParam().reason))) << text.toStdString();
        EXPECT_FALSE(text.contains(u"127.0.0.1:"_s)) << text.toStdString();
    }
};

TEST_P(BadIdentities, GetNoKey) {
    FerryboxServer server({}, showing(identity()));
    expectReason(failureText(server));
    EXPECT_TRUE(server.presigns().empty());
}

TEST_P(BadIdentities, GetNoPicture) {
    FerryboxServer bucket({}, showing(identity()));
    const FerryboxServer service(
        {.presign = always(answering(
             200, QJsonDocument(FerryboxServer::presignAnswer(bucket.uploadURL())).toJson()))});
    expectReason(failureText(service));
    EXPECT_TRUE(bucket.puts().empty());
}

TEST_P(BadIdentities, StayBadAfterAGoodOne) {
    const FerryboxServer good({}, showing(certificates().valid()));
    upload(good);
    FerryboxServer server({}, showing(identity()));
    expectReason(failureText(server));
    EXPECT_TRUE(server.presigns().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Servers, BadIdentities,
    ::testing::Values(
        BadIdentity{"Expired", &TestCertificates::expired, "The certificate has expired"},
        BadIdentity{"NotYetValid", &TestCertificates::notYetValid,
                    "The certificate is not yet valid"},
        BadIdentity{"AnotherHost", &TestCertificates::forAnotherHost,
                    "The host name did not match any of the valid hosts for this certificate"},
        BadIdentity{"SelfSigned", &TestCertificates::selfSigned,
                    "The certificate is self-signed, and untrusted"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(UploadTrust, AuthorityThatNobodyTrustsIsRefused) {
    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setCaCertificates({certificates().selfSigned().certificate});
    QSslConfiguration::setDefaultConfiguration(trust);
    FerryboxServer server({}, showing(certificates().valid()));
    EXPECT_TRUE(failureText(server).contains(u"certificate"_s));
    EXPECT_TRUE(server.presigns().empty());
}

TEST_F(UploadTrust, DefaultsThatTurnVerificationOffDoNotCount) {
    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setPeerVerifyMode(QSslSocket::VerifyNone);
    QSslConfiguration::setDefaultConfiguration(trust);
    FerryboxServer server({}, showing(certificates().selfSigned()));
    EXPECT_TRUE(failureText(server).contains(u"certificate"_s));
    EXPECT_TRUE(server.presigns().empty());
}

TEST_F(UploadTrust, HugeAnswerInOneChunkIsDropped) {
    testing::HttpPlan plan =
        testing::sending("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n80000000\r\n");
    plan.steps.push_back({.kind = testing::HttpStep::Kind::Stream, .count = 0x80000000});
    FerryboxServer server({.presign = always(plan)}, showing(certificates().valid()));
    const testing::PeakMemory memory;
    EXPECT_EQ(failureText(server), u"Unexpected response from Ferrybox."_s);
    EXPECT_TRUE(
        testing::processEventsUntil([&] { return server.server().openConnectionCount() == 0; }));
    EXPECT_LT(memory.growth(), 48 * 1024 * 1024);
}

TEST_F(UploadTrust, ServerThatHangsUpInTheHandshakeIsTold) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    int connections = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        ++connections;
        QTcpSocket* socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, &QTcpSocket::abort);
    });
    EXPECT_EQ(failureText(QUrl(u"https://127.0.0.1:%1/api"_s.arg(server.serverPort()))),
              u"The connection was lost."_s);
    EXPECT_EQ(connections, 1);
}

} // namespace snapvane
