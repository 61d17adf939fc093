// Answers of any size are met without reading, or holding, more than is needed.

#include "UploadFixture.h"

#include "support/ProcessMemory.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using testing::FerryboxServer;
using testing::HttpPlan;
using testing::HttpStep;
using testing::RecordedRequest;

constexpr qint64 mebibyte = 1024 * 1024;
constexpr qint64 limit = mebibyte;
constexpr qint64 huge = 2048 * mebibyte;

constexpr char unexpected[] = "Unexpected response from Ferrybox.";

/// How much may be on its way in buffers of the system, and be held here for a moment.
constexpr qint64 slack = 48 * mebibyte;

/// How a server may tell the length of what it sends.
struct Announcement {
    const char* name;
    const char* headers;
    const char* beforeEachBlock;
};

void PrintTo(const Announcement& announcement, std::ostream* stream) {
    *stream << announcement.name;
}

const Announcement announcements[] = {
    {"InAdvance", "Content-Length: 2147483648\r\n\r\n", ""},
    {"NotAtAll", "\r\n", ""},
    {"InOneChunk", "Transfer-Encoding: chunked\r\n\r\n80000000\r\n", ""},
    {"InChunks", "Transfer-Encoding: chunked\r\n", "\r\n40000\r\n"},
};

class UploadBounds : public testing::UploadTest {
protected:
    /// A good presign answer, made longer by spaces.
    static QByteArray paddedAnswer(const FerryboxServer& server, qint64 size) {
        const QByteArray answer =
            QJsonDocument(FerryboxServer::presignAnswer(server.uploadURL())).toJson();
        return answer + QByteArray(size - answer.size(), ' ');
    }
    /// A huge body after the status line and headers of its own.
    static HttpPlan streaming(const char* statusLine, const Announcement& announcement) {
        HttpPlan plan = testing::sending(QByteArray(statusLine) + announcement.headers);
        plan.steps.push_back(
            {.kind = HttpStep::Kind::Stream, .bytes = announcement.beforeEachBlock, .count = huge});
        return plan;
    }
    /// The client must hang up long before the server is through.
    static void expectHungUp(FerryboxServer& server) {
        EXPECT_TRUE(testing::processEventsUntil(
            [&] { return server.server().openConnectionCount() == 0; }));
        EXPECT_LT(server.server().streamedBytes(), slack);
    }
};

class HugeAnswers : public UploadBounds, public ::testing::WithParamInterface<Announcement> {};

} // namespace

TEST_F(UploadBounds, PresignAnswerOfTheLimitIsRead) {
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        return testing::answering(200, paddedAnswer(server, limit));
    }});
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
}

TEST_F(UploadBounds, PresignAnswerOverTheLimitIsUnexpected) {
    FerryboxServer server({.presign = [&](const RecordedRequest&) {
        return testing::answering(200, paddedAnswer(server, limit + 1));
    }});
    EXPECT_EQ(failureText(server), QLatin1String(unexpected));
    EXPECT_TRUE(server.puts().empty());
}

TEST_P(HugeAnswers, ToAPresignAreDropped) {
    FerryboxServer server({.presign = always(streaming("HTTP/1.1 200 OK\r\n", GetParam()))});
    const testing::PeakMemory memory;
    EXPECT_EQ(failureText(server), QLatin1String(unexpected));
    expectHungUp(server);
    EXPECT_LT(memory.growth(), slack);
}

TEST_P(HugeAnswers, ThatRefuseAPresignAreNotRead) {
    FerryboxServer server({.presign = always(streaming("HTTP/1.1 403 No\r\n", GetParam()))});
    const testing::PeakMemory memory;
    EXPECT_EQ(failureText(server), u"Ferrybox presign failed (HTTP 403)."_s);
    expectHungUp(server);
    EXPECT_LT(memory.growth(), slack);
}

TEST_P(HugeAnswers, ToAPutAreIgnored) {
    FerryboxServer server({.put = always(streaming("HTTP/1.1 200 OK\r\n", GetParam()))});
    const testing::PeakMemory memory;
    EXPECT_EQ(upload(server), FerryboxServer::publicURL());
    expectHungUp(server);
    EXPECT_LT(memory.growth(), slack);
}

TEST_F(UploadBounds, EndlessHeadersAreUnexpected) {
    HttpPlan plan = testing::sending("HTTP/1.1 200 OK\r\nX-Header: ");
    plan.steps.push_back({.kind = HttpStep::Kind::Stream, .bytes = "\r\nX: ", .count = huge});
    FerryboxServer server({.presign = always(plan)});
    const testing::PeakMemory memory;
    EXPECT_EQ(failureText(server), QLatin1String(unexpected));
    expectHungUp(server);
    EXPECT_LT(memory.growth(), slack);
}

INSTANTIATE_TEST_SUITE_P(Announced, HugeAnswers, ::testing::ValuesIn(announcements),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace snapvane
