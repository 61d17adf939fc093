// Requests that get no whole answer.

#include "UploadFixture.h"

#include "selection/LogCapture.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTcpServer>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using std::chrono::milliseconds;
using testing::answering;
using testing::FerryboxServer;
using testing::HttpPlan;
using testing::HttpStep;
using testing::RecordedRequest;

constexpr char lost[] = "The connection was lost.";
constexpr char timedOut[] = "The request timed out.";

class UploadTransport : public testing::UploadTest {
protected:
    /// The error of an upload that must fail on the way.
    std::optional<TransportError> errorOf(const QUrl& baseURL, const QByteArray& data) {
        try {
            upload(baseURL, data);
        } catch (const TransportError& error) {
            return error;
        }
        ADD_FAILURE() << "nothing went wrong on the way";
        return std::nullopt;
    }

    static QByteArray granted(const FerryboxServer& server) {
        return QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson();
    }
};

/// More than the buffers between here and a server that does not read.
QByteArray largePicture() {
    return QByteArray(24 * 1024 * 1024, 'x');
}

/// What a server does to a request, and what the user is told.
struct Fault {
    const char* name;
    HttpPlan plan;
    QString text;
};

const QByteArray headOnly = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n";

const Fault faults[] = {
    {"ClosedAtOnce", testing::sending({}), QLatin1String(lost)},
    {"ResetAtOnce", testing::resetting(), QLatin1String(lost)},
    {"ClosedInTheStatusLine", testing::sending("HTTP/1.1 2"), QLatin1String(lost)},
    {"ClosedInTheHeaders", testing::sending("HTTP/1.1 200 OK\r\nContent-Le"), QLatin1String(lost)},
    {"ResetInTheHeaders", testing::resetting("HTTP/1.1 200 OK\r\nContent-Le"), QLatin1String(lost)},
};

} // namespace

class TransportFaults : public UploadTransport, public ::testing::WithParamInterface<Fault> {};

TEST_P(TransportFaults, OfAPresignAreToldAndNotRepeated) {
    FerryboxServer server({.presign = always(GetParam().plan)});
    EXPECT_EQ(failureText(server), GetParam().text);
    EXPECT_EQ(server.server().connectionCount(), 1);
}

TEST_P(TransportFaults, OfAPutAreToldAndNotRepeated) {
    FerryboxServer server({.put = always(GetParam().plan)});
    EXPECT_EQ(failureText(server), GetParam().text);
    EXPECT_EQ(server.server().connectionCount(), 2);
}

INSTANTIATE_TEST_SUITE_P(Servers, TransportFaults, ::testing::ValuesIn(faults),
                         [](const auto& row) { return std::string(row.param.name); });

/// The library would ask for one while the interface waits.
TEST_F(UploadTransport, NoProxyIsUsed) {
    QTcpServer proxy;
    ASSERT_TRUE(proxy.listen(QHostAddress::LocalHost));
    qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.serverPort()));
    errorOf(QUrl(u"http://no-such-host.invalid/api"_s), pictureBytes());
    qunsetenv("http_proxy");
    EXPECT_FALSE(proxy.waitForNewConnection(100));
}

TEST_F(UploadTransport, PresignAnswerThatIsCutOffFails) {
    FerryboxServer server({.presign = always(testing::sending(headOnly + "{\"uploadUrl\": \"h"))});
    EXPECT_EQ(failureText(server), QLatin1String(lost));
    EXPECT_EQ(server.server().connectionCount(), 1);
}

TEST_F(UploadTransport, PresignAnswerThatIsResetFails) {
    HttpPlan plan = testing::sending(headOnly + "{\"uploadUrl\": \"h");
    plan.steps.push_back({.kind = HttpStep::Kind::Pause, .time = milliseconds(50)});
    plan.steps.push_back({.kind = HttpStep::Kind::Reset});
    FerryboxServer server({.presign = always(plan)});
    EXPECT_FALSE(failureText(server).isEmpty());
    EXPECT_EQ(server.server().connectionCount(), 1);
}

TEST_F(UploadTransport, ResetInTheMiddleOfThePictureFails) {
    HttpPlan plan = testing::resetting();
    plan.bodyBytesToRead = 100'000;
    FerryboxServer server({.put = always(plan)});
    EXPECT_EQ(errorOf(server.baseURL(), largePicture())->localizedDescription(),
              QLatin1String(lost));
    ASSERT_EQ(server.puts().size(), 1U);
    EXPECT_GE(server.puts()[0].body.size(), 100'000);
    EXPECT_LT(server.puts()[0].body.size(), largePicture().size());
}

TEST_F(UploadTransport, RefusalInTheMiddleOfThePictureIsAFailedUpload) {
    HttpPlan plan = testing::stalling(testing::httpAnswer(413));
    plan.bodyBytesToRead = 100'000;
    const FerryboxServer server({.put = always(plan)});
    EXPECT_THROW(upload(server.baseURL(), largePicture()), FerryboxUploadError);
}

TEST_F(UploadTransport, RefusedConnectionIsTold) {
    // A port that was free a moment ago.
    QTcpServer free;
    ASSERT_TRUE(free.listen(QHostAddress::LocalHost));
    const quint16 port = free.serverPort();
    free.close();
    const auto error = errorOf(QUrl(u"http://127.0.0.1:%1/api"_s.arg(port)), pictureBytes());
    EXPECT_EQ(error->code(), QAbstractSocket::ConnectionRefusedError);
    EXPECT_EQ(error->localizedDescription(), u"Connection refused"_s);
}

TEST_F(UploadTransport, RefusedConnectionForThePutIsTold) {
    QTcpServer free;
    ASSERT_TRUE(free.listen(QHostAddress::LocalHost));
    const QUrl nobody(u"http://127.0.0.1:%1/x?X-Signature=geheim"_s.arg(free.serverPort()));
    free.close();
    const FerryboxServer server(
        {.presign = always(
             answering(200, QJsonDocument(FerryboxServer::presignAnswer(nobody)).toJson()))});
    EXPECT_EQ(failureText(server), u"Connection refused"_s);
}

TEST_F(UploadTransport, NameThatIsNotFoundIsTold) {
    const auto error = errorOf(QUrl(u"https://ferrybox.invalid/api"_s), pictureBytes());
    EXPECT_EQ(error->code(), QAbstractSocket::HostNotFoundError);
    EXPECT_EQ(error->localizedDescription(), u"Host not found"_s);
}

TEST_F(UploadTransport, WaitsForAMinute) {
    EXPECT_EQ(FerryboxUploadService::Limits().inactivity, std::chrono::seconds(60));
}

TEST_F(UploadTransport, PresignWithoutAnAnswerTimesOut) {
    limits.inactivity = milliseconds(300);
    const FerryboxServer server({.presign = always(testing::stalling())});
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(failureText(server), QLatin1String(timedOut));
    EXPECT_GE(clock.elapsed(), limits.inactivity.count() * 9 / 10);
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST_F(UploadTransport, PresignAnswerThatStopsTimesOut) {
    limits.inactivity = milliseconds(300);
    const FerryboxServer server({.presign = always(testing::stalling(headOnly + "{"))});
    EXPECT_EQ(failureText(server), QLatin1String(timedOut));
}

TEST_F(UploadTransport, PutWithoutAnAnswerTimesOut) {
    limits.inactivity = milliseconds(300);
    const FerryboxServer server({.put = always(testing::stalling())});
    EXPECT_EQ(failureText(server), QLatin1String(timedOut));
}

TEST_F(UploadTransport, PutThatNobodyReadsTimesOut) {
    limits.inactivity = milliseconds(500);
    HttpPlan plan = {.steps = {{.kind = HttpStep::Kind::Pause, .time = std::chrono::seconds(20)}},
                     .bodyBytesToRead = 100'000};
    const FerryboxServer server({.put = always(plan)});
    const auto error = errorOf(server.baseURL(), largePicture());
    EXPECT_EQ(error->code(), QAbstractSocket::SocketTimeoutError);
}

TEST_F(UploadTransport, ConnectionThatIsNotAcceptedTimesOut) {
    limits.inactivity = milliseconds(300);
    // Nobody speaks TLS here: the handshake gets no answer.
    const testing::TestHttpServer server(always(testing::stalling()));
    QUrl url = server.url();
    url.setScheme(u"https"_s);
    EXPECT_EQ(failureText(url), QLatin1String(timedOut));
}

TEST_F(UploadTransport, AnswerThatDripsDoesNotTimeOut) {
    limits.inactivity = milliseconds(1000);
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        return HttpPlan{.steps = {{.kind = HttpStep::Kind::Drip,
                                   .bytes = testing::httpAnswer(200, granted(server)),
                                   .time = milliseconds(8)}}};
    }});
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
    EXPECT_GT(clock.elapsed(), 2 * limits.inactivity.count());
}

TEST_F(UploadTransport, PictureThatIsReadSlowlyDoesNotTimeOut) {
    limits.inactivity = milliseconds(1000);
    HttpPlan plan = answering(200);
    plan.pauseBetweenReads = milliseconds(40);
    FerryboxServer server({.put = always(plan)});
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(upload(server.baseURL(), largePicture()), FerryboxServer::publicURL());
    EXPECT_GT(clock.elapsed(), 2 * limits.inactivity.count());
}

TEST_F(UploadTransport, TextsNeverHoldTheQueryOfTheAddressOrTheKey) {
    const testing::LogCapture log;
    for (const Fault& fault : faults) {
        const FerryboxServer server({.put = always(fault.plan)});
        const QString text = failureText(server);
        EXPECT_FALSE(text.contains(u"Signature"_s)) << text.toStdString();
        EXPECT_FALSE(text.contains(*key.key)) << text.toStdString();
    }
    for (const auto& line : log.lines()) {
        EXPECT_EQ(line.text.find("Signature"), std::string::npos) << line.text;
        EXPECT_EQ(line.text.find(key.key->toStdString()), std::string::npos) << line.text;
    }
}

} // namespace snapvane
